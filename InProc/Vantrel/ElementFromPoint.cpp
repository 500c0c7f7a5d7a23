#include "InProc/Vantrel/ElementFromPoint.h"

#include <cstdint>
#include <deque>
#include <ios>
#include <optional>
#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "Common/include/TreeWalker/AANode.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/AAUtilitiesOwnerWindow.h"
#include "RuntimeCore/IA2ToolsHtml.h"
#include "RuntimeCore/RelatedElement/AARelatedElement.h"

namespace Zorvex {

namespace {

constexpr std::size_t MaximumBrowsedChildren = 1500;
constexpr int MaximumHitTestDepth = 50;

struct LocatedElement {
    CComPtr<IAccessible> accessible;
    CComVariant child{CHILDID_SELF};
    RECT rectangle{};
};

// In 32-bit signed arithmetic, without the overflow that a rectangle from outside could cause.
std::int32_t Area(const RECT& rectangle) {
    const auto width = static_cast<std::uint32_t>(rectangle.right) - static_cast<std::uint32_t>(rectangle.left);
    const auto height = static_cast<std::uint32_t>(rectangle.bottom) - static_cast<std::uint32_t>(rectangle.top);
    return static_cast<std::int32_t>(width * height);
}

std::optional<RECT> Location(IAccessible* accessible, const VARIANT& child) {
    return ReadLocation(AANode{accessible, CComVariant(child)});
}

CComPtr<IAccessible> WindowObject(HWND hWnd, HRESULT& result) {
    CComPtr<IAccessible> object;
    result = ObjectFromWindow(hWnd, OBJID_WINDOW, object);
    if (FAILED(result)) object.Release();
    return object;
}

// A child that is an object of its own, in a window of another thread, is left out: its calls would leave this thread.
bool IsInOtherThread(IAccessible* child, DWORD targetThread) {
    HWND window = nullptr;
    if (FAILED(::WindowFromAccessibleObject(child, &window)) || !window) return false;
    DWORD pid = 0;
    const DWORD thread = ::GetWindowThreadProcessId(window, &pid);
    if (thread == targetThread) return false;
    if (ShouldLog(Severity::Warning))
        LogStream(Severity::Warning, __builtin_FILE(), "ElemFromPointBrowseHierarchy")
            << "Skip child from another window thread, hChildWnd: " << static_cast<const void*>(window) << ", childWndPid: " << pid
            << ", childWndThreadId: " << thread;
    return true;
}

bool IsShown(IAccessible* accessible, const VARIANT& child) {
    CComVariant state;
    if (FAILED(accessible->get_accState(child, &state))) return false;
    return !(state.vt == VT_I4 && (state.lVal & (STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN)));
}

std::optional<LocatedElement> ElemFromPointBrowseHierarchy(HWND hWnd, POINT point) {
    DWORD targetPid = 0;
    const DWORD targetThread = ::GetWindowThreadProcessId(hWnd, &targetPid);
    if (ShouldLog(Severity::Verbose))
        LogStream(Severity::Verbose) << "hWnd: " << static_cast<const void*>(hWnd) << ", targetWndPid: " << targetPid
                                     << ", targetWndThreadId: " << targetThread;
    HRESULT result = S_OK;
    CComPtr<IAccessible> root = WindowObject(hWnd, result);
    if (!root) {
        LogError("AccessibleObjectFromWindow failed");
        return std::nullopt;
    }
    const std::optional<RECT> rootRectangle = Location(root, CComVariant(CHILDID_SELF));
    if (!rootRectangle || ::IsRectEmpty(&*rootRectangle)) {
        LogError("spCrtAcc->accLocation failed");
        return std::nullopt;
    }

    LocatedElement best{root, CComVariant(CHILDID_SELF), *rootRectangle};
    std::deque<CComPtr<IAccessible>> queue;
    queue.push_back(std::move(root));
    std::size_t total = 0;
    std::size_t iterated = 0;
    std::vector<CComVariant> children;
    while (!queue.empty()) {
        const CComPtr<IAccessible> parent = std::move(queue.front());
        queue.pop_front();
        result = AAObjectWrapper::GetVariantChildren(*parent, children);
        if (FAILED(result)) {
            if (ShouldLog(Severity::Error)) LogStream(Severity::Error) << "AccessibleChildren failed; hres: " << result;
            continue;
        }
        total += children.size();
        if (total > MaximumBrowsedChildren) {
            LogVerbose("Too many AA objects; exit and choose between current result and hit-test");
            break;
        }
        for (std::size_t i = 0; i < children.size(); ++i) {
            const AAObjectWrapper element = AAObjectWrapper::FromChild(parent, std::move(children[i]));
            if (!element.IsValid()) {
                LogError("Cannot get %d-th child; skip it", static_cast<int>(i));
                continue;
            }
            if (element.IsFullObject() && IsInOtherThread(element.container, targetThread)) continue;
            if (!IsShown(element.container, element.childId)) continue;
            // Before its location is known, so that a container without one can still yield children.
            if (element.IsFullObject()) queue.push_back(element.container);
            ++iterated;
            const std::optional<RECT> rectangle = Location(element.container, element.childId);
            if (!rectangle) {
                if (ShouldLog(Severity::Error)) LogStream(Severity::Error) << "Cannot get " << i << "-th child location; skip it";
                continue;
            }
            // Among equal areas the last one visited wins, which favours the deeper element.
            if (!::IsRectEmpty(&*rectangle) && ::PtInRect(&*rectangle, point) && Area(*rectangle) <= Area(best.rectangle))
                best = LocatedElement{element.container, element.childId, *rectangle};
        }
    }
    if (ShouldLog(Severity::Verbose)) LogStream(Severity::Verbose) << "End; iteratedChildrenCount: " << iterated;
    return best;
}

// The top-level ancestor, where it is served by the window's own thread and process; else the window.
HWND HitTestWindow(HWND hWnd) {
    const HWND topLevel = ::GetAncestor(hWnd, GA_ROOT);
    DWORD pid = 0, topLevelPid = 0;
    const DWORD thread = ::GetWindowThreadProcessId(hWnd, &pid);
    const DWORD topLevelThread = ::GetWindowThreadProcessId(topLevel, &topLevelPid);
    return topLevel && thread == topLevelThread && pid == topLevelPid ? topLevel : hWnd;
}

std::optional<LocatedElement> GetAAFromPointWithHitTest(HWND hWnd, POINT point, bool fromTopLevel) {
    if (ShouldLog(Severity::Verbose)) LogStream(Severity::Verbose) << "hWnd: " << static_cast<const void*>(hWnd);
    if (fromTopLevel) hWnd = HitTestWindow(hWnd);
    HRESULT result = S_OK;
    LocatedElement current;
    current.accessible = WindowObject(hWnd, result);
    if (!current.accessible) {
        LogError("GetAAFromPointWithHitTest: AccessibleObjectFromWindow failed");
        return std::nullopt;
    }

    int count = 0;
    while (count < MaximumHitTestDepth) {
        if (!current.accessible) {
            LogError("Exit loop; spCrtAcc is NULL");
            break;
        }
        CComVariant hit;
        result = current.accessible->accHitTest(point.x, point.y, &hit);
        if (FAILED(result)) {
            if (ShouldLog(Severity::Error))
                LogStream(Severity::Error) << "Exit loop; spCrtAcc->accHitTest failed with code: " << result;
            break;
        }
        if (hit.vt == VT_I4) {
            current.child = hit;
            LogInfo("Hit test exit loop; VT_I4 child found");
            break;
        }
        if (hit.vt != VT_DISPATCH) {  // VT_EMPTY: the point lies outside
            LogInfo("Hit-test exit loop");
            break;
        }
        CComPtr<IAccessible> next;
        if (!hit.pdispVal || FAILED(hit.pdispVal->QueryInterface(IidOf<IAccessible>(), reinterpret_cast<void**>(&next))) || !next) {
            LogWarning("Query for IAccessible failed");
            break;
        }
        current.accessible = std::move(next);
        current.child = CComVariant(CHILDID_SELF);
        ++count;
    }
    if (ShouldLog(Severity::Info)) LogStream(Severity::Info) << "Hit-test nCount: " << count;
    const std::optional<RECT> rectangle = Location(current.accessible, current.child);
    if (!rectangle) {
        LogError("GetAAFromPointWithHitTest: cannot get location");
        return std::nullopt;
    }
    current.rectangle = *rectangle;  // may be empty
    return current;
}

// In DOM mode the element that stands for an HTML element is preferred, where it has a place on the screen.
void PreferHtmlElement(LocatedElement& element) {
    if (!element.accessible || element.child.vt != VT_I4 || element.child.lVal != CHILDID_SELF) return;
    CComPtr<IAccessible> html;
    if (FAILED(IA2Tools::GetAccElemHtml(element.accessible, html)) || !html) return;
    const std::optional<RECT> rectangle = Location(html, CComVariant(CHILDID_SELF));
    if (!rectangle || ::IsRectEmpty(&*rectangle)) return;
    LogInfo(LocatedFormat<char>("Found the AA Element corresponding to the selected HTML Element", __builtin_FILE(),
                                "FindAAElementFromPointImpl"));
    element = LocatedElement{std::move(html), CComVariant(CHILDID_SELF), *rectangle};
}

FindElemFromPointResponse GetFromPointResponse(const FindElemFromPointRequest& request, LocatedElement element) {
    FindElemFromPointResponse response;
    if (request.relatedElement == RelatedElementKind::ClosestComboBox) {
        if (CComPtr<IAccessible> ancestor = FindAncestorWithRole(element.accessible, ROLE_SYSTEM_COMBOBOX)) {
            if (const std::optional<RECT> rectangle = Location(ancestor, CComVariant(CHILDID_SELF))) {
                element = LocatedElement{std::move(ancestor), CComVariant(CHILDID_SELF), *rectangle};
                response.relatedElementUsed = true;
            }
        }
    }
    CComVariant role;
    if (SUCCEEDED(element.accessible->get_accRole(element.child, &role))) response.role = std::move(role);

    const bool allowFallback =
        (request.flags & FromPointDomMode) && (NWindows::IsChromiumWindow(request.window) || NWindows::IsFirefoxWindow(request.window));
    const HRESULT result = AAUtil::GetIAccOwnerWindow(request.window, element.accessible, allowFallback, response.ownerWindow);
    if (FAILED(result) || !::IsWindow(response.ownerWindow)) {
        if (ShouldLog(Severity::Warning)) LogStream(Severity::Warning) << "GetIAccOwnerWindow failed, hr: " << std::hex << result;
        response.ownerWindow = nullptr;
    }
    response.rectangle = element.rectangle;
    response.element = AAContainerCache::Instance().RegisterObject(
        {request.clientPid, request.window}, AAElement{request.window, std::move(element.accessible), std::move(element.child)},
        allowFallback ? 1u : 0u);
    return response;
}

}  // namespace

FindElemFromPointResponse FindAAElementFromPointImpl(const FindElemFromPointRequest& request) {
    if (!::IsWindow(request.window)) {
        LogError("invalid input param");
        return {};
    }
    RECT windowRectangle{};
    if (!::GetWindowRect(request.window, &windowRectangle)) {
        LogError("GetWindowRect failed");
        return {};
    }
    if (!::PtInRect(&windowRectangle, request.point)) {
        LogError("ptScreen not inside hWnd");
        return {};
    }

    std::optional<LocatedElement> found;
    if (request.flags & FromPointBrowseHierarchy) found = ElemFromPointBrowseHierarchy(request.window, request.point);
    if (request.flags & FromPointHitTest) {
        std::optional<LocatedElement> hit =
            GetAAFromPointWithHitTest(request.window, request.point, (request.flags & FromPointHitTestFromTopLevel) != 0);
        // A tie stays with the hierarchy.
        if (hit && (!found || (Area(hit->rectangle) != 0 && Area(hit->rectangle) < Area(found->rectangle)))) found = std::move(hit);
    }
    if (!found) return {};
    if (request.flags & FromPointDomMode) PreferHtmlElement(*found);
    return GetFromPointResponse(request, std::move(*found));
}

}  // namespace Zorvex
