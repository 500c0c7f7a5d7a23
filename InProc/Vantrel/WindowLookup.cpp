#include "InProc/Vantrel/WindowLookup.h"

#include <exception>
#include <ios>
#include <utility>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComPtr.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "RuntimeCore/AAUtilitiesName.h"

namespace Zorvex {

namespace {

struct NameSearch {
    StringValue* name = nullptr;
    StringValue* windowClass = nullptr;  // null: any
    std::vector<HWND> windows;
    std::exception_ptr failure;

    void Visit(HWND window) {
        if (windowClass) {
            wchar_t className[260] = {};
            // A class that can't be read doesn't leave the window out.
            if (::GetClassNameW(window, className, 260) > 0 && !windowClass->Matches(static_cast<const wchar_t*>(className), nullptr))
                return;
        }
        const CString windowName = AAUtil::AaNameFromWindow(window);
        if (!windowName.empty() && name->Matches(windowName, nullptr)) windows.push_back(window);
    }
};

// The platform calls back through its own frames, which an exception must not cross.
BOOL CALLBACK VisitWindow(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<NameSearch*>(parameter);
    try {
        search.Visit(window);
        return TRUE;
    } catch (...) {
        search.failure = std::current_exception();
        return FALSE;
    }
}

bool IsRole(const AAObjectWrapper& element, LONG role) {
    CComVariant actual;
    return element.container->get_accRole(element.childId, &actual) == S_OK && actual.vt == VT_I4 && actual.lVal == role;
}

// An object of its own or a simple child; invalid if there is none.
AAObjectWrapper FirstChild(IAccessible* object) {
    CComVariant child;
    if (FAILED(object->accNavigate(NAVDIR_FIRSTCHILD, CComVariant(CHILDID_SELF), &child))) return {};
    return AAObjectWrapper::FromChild(object, std::move(child));
}

}  // namespace

GetWndsByAaNameResponse GetWndsByAaNameImpl(const GetWndsByAaNameRequest& request) {
    GetWndsByAaNameResponse response;
    response.found = true;
    if (!request.accessibleName) return response;
    NameSearch search;
    search.name = request.accessibleName.get();
    if (StringValue* windowClass = request.windowClass.get();
        windowClass && windowClass->GetEnabled() && !windowClass->ToString().empty())
        search.windowClass = windowClass;
    ::EnumChildWindows(request.parent, &VisitWindow, reinterpret_cast<LPARAM>(&search));
    if (search.failure) std::rethrow_exception(search.failure);
    response.windows = std::move(search.windows);
    return response;
}

AnswerResponse ShouldAddTitleToWndSelectorImpl(const ShouldAddTitleToWndSelectorRequest& request) {
    CComPtr<IAccessible> object;
    const HRESULT result = ObjectFromWindow(request.window, OBJID_WINDOW, object);
    if (FAILED(result)) {
        if (ShouldLog(Severity::Error))
            LogStream(Severity::Error) << "AccessibleObjectFromWindow failed, hRes=" << std::hex << result
                                       << ", should add the WND TITLE";
        return {true};
    }
    if (!object) {
        LogError("AccessibleObjectFromWindow succeeded, but the returned AA object is NULL, should add the WND TITLE");
        return {true};
    }
    const AAObjectWrapper element(object, CComVariant(CHILDID_SELF));
    if (IsRole(element, ROLE_SYSTEM_TEXT)) {
        LogInfo("ROLE_SYSTEM_TEXT encountered, return false - should NOT add the WND TITLE");
        return {false};
    }
    if (IsRole(element, ROLE_SYSTEM_WINDOW)) {
        const AAObjectWrapper child = FirstChild(object);
        if (child.IsValid() && IsRole(child, ROLE_SYSTEM_TEXT)) {
            LogInfo("ROLE_SYSTEM_TEXT encountered on the first AA child, return false - should NOT add the WND TITLE");
            return {false};
        }
    }
    return {true};
}

}  // namespace Zorvex
