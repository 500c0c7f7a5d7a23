#include "InProc/Vantrel/ElementLookup.h"

#include <cstdint>
#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "Common/include/TreeWalker/AANode.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/AAUtilitiesFind.h"
#include "RuntimeCore/AAUtilitiesName.h"
#include "RuntimeCore/AAUtilitiesOwnerWindow.h"
#include "RuntimeCore/CompareAAObjects.h"
#include "Common/UTILITY/WindowKinds.h"

namespace Zorvex {

namespace {

AAContainerCache::ClientKey KeyOf(const AAObjectIdentifier& identifier) {
    return {identifier.clientPid, identifier.originalWnd};
}

// What the sibling is looked for in: the container of a simple element, the parent of any other.
CComPtr<IAccessible> ParentOf(const AAElement& element) {
    if (element.child.lVal != CHILDID_SELF) return element.spAcc;
    CComPtr<IDispatch> dispatch;
    CComPtr<IAccessible> parent;
    HRESULT result = element.spAcc->get_accParent(&dispatch);
    if (SUCCEEDED(result) && dispatch) result = dispatch.QueryInterface(parent);
    if (FAILED(result) || !parent) {
        LogError(LocatedFormat<char>("get_accParent failed with code %x", __builtin_FILE(), "GetAccSibling"), result);
        return nullptr;
    }
    return parent;
}

bool GetAccSibling(const AAElement& element, std::int32_t offset, AAElement& sibling) {
    LogVerbose("Start");
    if (!element.spAcc || offset == 0) {
        LogError("Invalid arguments");
        return false;
    }
    const CComPtr<IAccessible> parent = ParentOf(element);
    if (!parent) return false;
    std::vector<AAObjectWrapper> children;
    if (!AAObjectWrapper::GetChildren(parent, children)) {
        LogError("cannot get children");
        return false;
    }
    std::size_t position = 0;
    while (position < children.size() &&
           !CompareAAObjects(children[position].container, children[position].childId, element.spAcc, element.child, FALSE))
        ++position;
    if (position == children.size()) {
        LogError("Object not found");
        return false;
    }
    const std::int64_t index = static_cast<std::int64_t>(position) + offset;
    if (index < 0 || index >= static_cast<std::int64_t>(children.size())) {
        LogError("Index out of bounds");
        return false;
    }
    AAObjectWrapper& found = children[static_cast<std::size_t>(index)];
    if (!found.IsValid()) {
        LogError("Invalid child at index %d", static_cast<int>(index));
        return false;
    }
    sibling.hWnd = element.hWnd;
    sibling.spAcc = std::move(found.container);
    sibling.child = std::move(found.childId);
    return true;
}

}  // namespace

AnswerResponse AreEqualImpl(const AreEqualRequest& request) {
    const auto isUsable = [](const AAObjectIdentifier& identifier) {
        return ::IsWindow(identifier.hWnd) && identifier.containerId != 0;
    };
    if (!isUsable(request.first) || !isUsable(request.second)) {
        LogError("Invalid params in AreEqualImpl");
        return {};
    }
    const AAElement first = AAContainerCache::Instance().LookupIdentifier(request.first);
    const AAElement second = AAContainerCache::Instance().LookupIdentifier(request.second);
    if (!first.IsValid() || !second.IsValid()) {
        LogError("Invalid cached objects in AreEqualImpl");
        return {};
    }
    return {CompareAAObjects(first.spAcc, first.child, second.spAcc, second.child, TRUE) != FALSE};
}

IdentifierResponse GetSiblingImpl(const GetSiblingRequest& request) {
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    if (!element.IsValid()) {
        LogError("LookupIdentifier failed");
        return {};
    }
    AAElement sibling;
    if (!GetAccSibling(element, request.offset, sibling)) {
        LogError("Vantrel::GetSiblingImpl failed");
        return {};
    }
    return {AAContainerCache::Instance().RegisterObject(KeyOf(request.element), std::move(sibling))};
}

IdentifierResponse GetObjectIdFromWindowImpl(const GetObjectIdFromWindowRequest& request) {
    CComPtr<IAccessible> object;
    const HRESULT result = ObjectFromWindow(request.window, OBJID_WINDOW, object);
    if (FAILED(result)) {
        LogError("AccessibleObjectFromWindow failed, hRes = 0x%X", result);
        return {};
    }
    if (!object) {
        LogError("AccessibleObjectFromWindow succeeded, but the returned AA object is NULL");
        return {};
    }
    return {AAContainerCache::Instance().RegisterObject({request.clientPid, request.window},
                                                        AAElement{request.window, std::move(object), CComVariant(CHILDID_SELF)})};
}

IdentifierResponse GetObjectIdFromEventImpl(const GetObjectIdFromEventRequest& request) {
    CComPtr<IAccessible> object;
    CComVariant child;
    const HRESULT result = ::AccessibleObjectFromEvent(request.window, static_cast<DWORD>(request.objectId),
                                                       static_cast<DWORD>(request.childId), &object, &child);
    if (FAILED(result)) {
        LogError("AccessibleObjectFromEvent failed, hRes = 0x%X", result);
        return {};
    }
    if (!object) {
        LogError("AccessibleObjectFromEvent succeeded, but the returned AA object is NULL");
        return {};
    }
    if (child.vt != VT_I4) {
        LogError("AccessibleObjectFromEvent succeeded, but the returned AA child ID has a variant type %d, expected %d", child.vt,
                 static_cast<int>(VT_I4));
        return {};
    }
    LogVerbose("Calling RegisterObject");
    return {AAContainerCache::Instance().RegisterObject({request.clientPid, request.window},
                                                        AAElement{request.window, std::move(object), std::move(child)})};
}

NameResponse AaNameFromWindowImpl(const AaNameFromWindowRequest& request) {
    return {true, AAUtil::AaNameFromWindow(request.window)};
}

NameResponse FindElementWithRoleImpl(const FindElementWithRoleRequest& request) {
    const AANode node = AAUtil::FindElementWithRole(request.window, request.role, request.maximumDepth);
    if (!node.IsValid()) return {};
    CComBSTR name;
    if (FAILED(node.container->get_accName(node.childId, &name))) name.Empty();
    return {true, name.ToString()};
}

AnswerResponse IsValidIdentifierImpl(const IsValidIdentifierRequest& request) {
    LogVerbose("calling LookupIdentifier");
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    if (!element.IsValid()) {
        LogError("Invalid AA object");
        return {};
    }
    CComVariant state;
    return {element.spAcc->get_accState(element.child, &state) != E_INVALIDARG};
}

AnswerResponse IsListViewItemImpl(const IsListViewItemRequest& request) {
    LogVerbose("calling LookupIdentifier");
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    if (!element.IsValid()) {
        LogError("Invalid AA object");
        return {};
    }
    CComVariant role;
    if (FAILED(element.spAcc->get_accRole(element.child, &role)) || role.vt != VT_I4) return {};
    if (role.lVal != ROLE_SYSTEM_LISTITEM && role.lVal != ROLE_SYSTEM_CHECKBUTTON) return {};
    HWND owner = nullptr;
    if (FAILED(AAUtil::GetIAccOwnerWindow(element.hWnd, element.spAcc, request.element.isDomAria != 0, owner))) return {};
    return {GetAASpecialType(owner) == AA_TYPE_LISTVIEW};
}

}  // namespace Zorvex
