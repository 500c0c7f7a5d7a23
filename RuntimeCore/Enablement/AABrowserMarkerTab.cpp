#include "RuntimeCore/Enablement/AABrowserMarkerTab.h"

#include <ios>
#include <limits>
#include <string_view>

#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"
#include "RuntimeCore/AAUtilitiesFind.h"
#include "RuntimeCore/AAUtilitiesName.h"
#include "RuntimeCore/Enablement/RoleWalk.h"
#include "RuntimeCore/Enablement/WindowAccessible.h"
#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex {

namespace {

constexpr std::wstring_view Markers[] = {L"Zorvex WindowId=", L"Zorvex Browser Automation Id: "};
constexpr wchar_t DocumentRole[] = L"document";

// Leading white space is allowed, whatever follows the digits is ignored.
std::int32_t ParseId(std::wstring_view text) {
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
    if (text.empty() || text.front() < L'0' || text.front() > L'9') return NoWindowId;
    std::int64_t number = 0;
    for (; !text.empty() && text.front() >= L'0' && text.front() <= L'9'; text.remove_prefix(1)) {
        number = number * 10 + (text.front() - L'0');
        if (number > most) return NoWindowId;
    }
    return static_cast<std::int32_t>(number);
}

}  // namespace

std::int32_t ExtractWindowIdFromName(const AANode& node) {
    const CString name = AAUtil::GetAAElementName(node.container, node.childId);
    for (const std::wstring_view marker : Markers)
        if (std::wstring_view(name).starts_with(marker)) return ParseId(std::wstring_view(name).substr(marker.size()));
    return NoWindowId;
}

std::int32_t FindBrowserMarkerTab(HWND browserWnd, const wchar_t* markerRole) {
    CComPtr<IAccessible> root;
    if (const HRESULT hRes = GetWindowAccessible(browserWnd, root); FAILED(hRes)) {
        if (ShouldLog(Severity::Error))
            LogStream(Severity::Error) << "AccessibleObjectFromWindow failed, browserWnd: " << NWindows::WindowDebugText(browserWnd)
                                       << ", hRes: " << std::hex << hRes;
        return NoWindowId;
    }
    LONG visited = 0;
    std::int32_t id = NoWindowId;
    const auto visit = [&](const AANode& node, unsigned depth) {
        if (++visited > AAUtil::MaximumSearchedElements) return AATreeWalker::Next::Stop;
        const CString role = RoleTextOf(node);
        if (IsRoleText(role, DocumentRole)) return AATreeWalker::Next::SkipChildren;
        if (!IsRoleText(role, markerRole)) return AATreeWalker::Next::Continue;
        id = ExtractWindowIdFromName(node);
        if (id == NoWindowId) return AATreeWalker::Next::Continue;
        if (ShouldLog(Severity::Info))
            LogStream(Severity::Info, __builtin_FILE(), "FindBrowserMarkerTab") << "Extracted window id: " << id << " from browser wnd: " << NWindows::WindowDebugText(browserWnd)
                                      << ", level: " << depth;
        return AATreeWalker::Next::Stop;
    };
    AATreeWalker walker(AANode{root, CComVariant(CHILDID_SELF)});
    walker.FindFirst(visit, AATreeWalker::NoDepthLimit, AATreeWalker::TraversalType::BreadthFirst);
    return id;
}

}  // namespace Zorvex
