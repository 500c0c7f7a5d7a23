#include "RuntimeCore/RoleTexts.h"

#include <memory>
#include <new>
#include <string_view>

#include "Common/include/Log.h"

namespace Zorvex::AAUtil {

namespace {

// Row r - 1 holds the text of role r.
constexpr std::wstring_view Texts[LastRoleWithText] = {
    L"title bar", L"menu bar", L"scroll bar", L"grip", L"sound", L"cursor", L"caret", L"alert",
    L"window", L"client", L"popup menu", L"menu item", L"tool tip", L"application", L"document", L"pane",
    L"chart", L"dialog", L"border", L"grouping", L"separator", L"tool bar", L"status bar", L"table",
    L"column header", L"row header", L"column", L"row", L"cell", L"link", L"help balloon", L"character",
    L"list", L"list item", L"outline", L"outline item", L"page tab", L"property page", L"indicator", L"graphic",
    L"text", L"editable text", L"push button", L"check box", L"radio button", L"combo box", L"drop down", L"progress bar",
    L"dial", L"hot key field", L"slider", L"spin box", L"diagram", L"animation", L"equation", L"drop down button",
    L"menu button", L"grid drop down button", L"white space", L"page tab list", L"clock", L"split button", L"IP address",
    L"outline button"};

constexpr UINT PlatformTextCapacity = 260;

}  // namespace

CString GetRoleAsText(LONG role) {
    if (role == 0) {
        LogError("Invalid parameter");
        return {};
    }
    // A negative role is a huge one to the platform.
    if (role < 0 || role > LastRoleWithText) {
        LogError("%d exceeded %d use GetRoleText", role, LastRoleWithText);
        const std::unique_ptr<wchar_t[]> psTemp(new (std::nothrow) wchar_t[PlatformTextCapacity]());
        if (!psTemp) {
            LogError("psTemp is NULL in GetRoleAsText");
            return {};
        }
        ::GetRoleTextW(static_cast<DWORD>(role), psTemp.get(), PlatformTextCapacity);
        return psTemp.get();
    }
    return CString(Texts[role - 1]);
}

}  // namespace Zorvex::AAUtil
