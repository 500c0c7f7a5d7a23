#include "InProc/Vantrel/FocusedElement.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Common/UTILITY/NProcess.h"
#include "Common/UTILITY/NWindows.h"
#include "Common/UTILITY/ProcessNames.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "Common/include/TreeWalker/AANode.h"
#include "Common/include/TreeWalker/TreeWalker.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/AAUtilitiesOwnerWindow.h"

namespace Zorvex {

namespace {

// The browsers whose top-level windows answer for the focus themselves.
bool IsChromiumBrowser(HWND hWnd) {
    constexpr std::array<std::wstring_view, 4> browsers{L"chrome.exe", L"brave.exe", L"msedge.exe", L"vivaldi.exe"};
    const CString name = NProcess::GetWindowProcessName(hWnd);
    return std::find(browsers.begin(), browsers.end(), name) != browsers.end();
}

// An embedded page knows its focus only in its document.
bool AsksTheDocument(HWND hWnd) {
    const HWND mainWindow = NWindows::IsChromiumWidget(hWnd);
    return mainWindow && (!NWindows::IsTopLevelWindow(mainWindow) || !IsChromiumBrowser(hWnd));
}

CComPtr<IAccessible> FindDocument(IAccessible* object) {
    using Walker = TreeWalker<AANode, TWDefaultCustomData>;
    Walker walker(AANode{object, CComVariant(CHILDID_SELF)});
    const AANode document = walker.FindFirst(
        [](const AANode& node, unsigned) {
            const auto role = ReadRole(node);
            return role && role->vt == VT_I4 && role->lVal == ROLE_SYSTEM_DOCUMENT ? Walker::Next::Stop : Walker::Next::Continue;
        },
        3, Walker::TraversalType::BreadthFirst);
    return document.IsValid() ? document.container : nullptr;
}

// Follows the focus down through nested objects to the one that answers with a child id of its own. False, with a
// line in the log, when it can't be followed.
bool FollowFocus(CComPtr<IAccessible>& object, CComVariant& child) {
    // The field has no limit; a server whose focus leads back to itself would never end without one.
    constexpr int maximumSteps = 10'000;
    for (int step = 0; step < maximumSteps; ++step) {
        CComVariant focus;
        const HRESULT result = object->get_accFocus(&focus);
        if (FAILED(result)) {
            LogError("get_accFocus failed with %x", result);
            return false;
        }
        if (focus.vt == VT_I4) {
            child = std::move(focus);
            return true;
        }
        if (focus.vt != VT_DISPATCH) {
            LogError("Unexpected variant type %d", focus.vt);
            return false;
        }
        CComPtr<IAccessible> next;
        if (!focus.pdispVal || FAILED(focus.pdispVal->QueryInterface(IidOf<IAccessible>(), reinterpret_cast<void**>(&next))) || !next) {
            LogError("Not an AA object");
            return false;
        }
        object = std::move(next);
    }
    LogError("The focus was not reached in %d steps", maximumSteps);
    return false;
}

}  // namespace

IdentifierResponse GetFocusedElementImpl(const GetFocusedElemRequest& request) {
    if (!::IsWindow(request.window)) {
        LogError("GetFocusedElementImpl: invalid arguments");
        return {};
    }
    CComPtr<IAccessible> object;
    if (FAILED(ObjectFromWindow(request.window, OBJID_WINDOW, object)) || !object) {
        LogError("GetFocusedElementImpl: cannot get AA from hwnd %p", request.window);
        return {};
    }
    if (AsksTheDocument(request.window)) {
        if (CComPtr<IAccessible> document = FindDocument(object)) object = std::move(document);
    }
    CComVariant child(CHILDID_SELF);
    if (!FollowFocus(object, child)) return {};

    HWND owner = nullptr;
    if (FAILED(AAUtil::GetIAccOwnerWindow(request.window, object, false, owner))) {
        // The words promise the caller's window, and the element's window stays null all the same: the answer is
        // then all zero, on purpose.
        LogWarning("Failed to get focused AA element HWND. Using caller provided HWND.");
        owner = nullptr;
    }
    LogVerbose("Calling AAContainerCache::RegisterObject");
    return {AAContainerCache::Instance().RegisterObject({request.clientPid, request.window},
                                                        AAElement{owner, std::move(object), std::move(child)})};
}

}  // namespace Zorvex
