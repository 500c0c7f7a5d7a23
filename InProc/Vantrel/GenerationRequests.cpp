#include "InProc/Vantrel/GenerationRequests.h"

#include <utility>

#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/Selectors/Generation/HierarchyRules.h"
#include "RuntimeCore/Selectors/Generation/SelectorAttributes.h"
#include "RuntimeCore/Selectors/Generation/SelectorIndex.h"

namespace Zorvex {

namespace {

// The five attributes that tell elements apart. Others in the map are looked at by nobody.
Generation::IdentifyingAttributes IdentifyingAttributesOf(const AttributeTexts& attributes) {
    const auto text = [&](const wchar_t* name) {
        const auto found = attributes.find(name);
        return found == attributes.end() ? CString() : found->second;
    };
    return {text(L"name"), text(L"role"), text(L"automationid"), text(L"labeledby"), text(L"virtualname")};
}

}  // namespace

GetSelectorAttrListResponse GetSelectorAttrListAAImpl(const GetSelectorAttrListRequest& request) {
    GetSelectorAttrListResponse response;
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    response.success = element.IsValid();
    Generation::GetAllSelectorAttributes(element, request.element.isDomAria != 0, request.excludedNames, response.attributes);
    return response;
}

GetNextParentForAAHierarchyResponse GetNextParentForAAHierarchyImpl(const GetNextParentForAAHierarchyRequest& request) {
    GetNextParentForAAHierarchyResponse response;
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    Generation::NextParent next = Generation::GetNextParentForAAHierarchy(element.hWnd, element.spAcc, element.child,
                                                                          request.mode != HierarchyMode::Mixed, false);
    response.success = next.hParentWnd != nullptr;
    response.parentWindow = next.hParentWnd;
    response.useWindow = next.bUseWnd;
    response.parent = AAContainerCache::Instance().RegisterObject(
        {request.element.clientPid, request.element.originalWnd},
        AAElement{next.hParentWnd, std::move(next.spParentAcc), CComVariant(CHILDID_SELF)});
    return response;
}

GetElementIndexResponse GetElementIndexImpl(const GetElementIndexRequest& request) {
    GetElementIndexResponse response;
    const AAElement ancestor = AAContainerCache::Instance().LookupIdentifier(request.ancestor);
    const AAElement target = AAContainerCache::Instance().LookupIdentifier(request.target);
    // An ancestor that is gone isn't replaced by its window: the place would be one among other elements.
    const bool ancestorIsGone = request.ancestor.containerId != 0 && !ancestor.IsValid();
    if (ancestorIsGone || !target.IsValid()) return response;
    LONG index = -1;
    if (Generation::GetSelectorIndexWithAttributes(request.ancestorWindow, ancestor.spAcc, target.spAcc, target.child,
                                                   IdentifyingAttributesOf(request.attributes), index))
        response.index = index;
    return response;
}

}  // namespace Zorvex
