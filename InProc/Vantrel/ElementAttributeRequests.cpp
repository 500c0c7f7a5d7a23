#include "InProc/Vantrel/ElementAttributeRequests.h"

#include "Common/include/Log.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/ElementAttributes.h"
#include "RuntimeCore/NativeAttributes.h"

namespace Zorvex {

namespace {

AttributeResponse ReadAttribute(const AAObjectIdentifier& identifier, const CString& name) {
    AttributeResponse response;
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(identifier);
    if (!element.IsValid()) {
        LogError("Invalid AA object");
        response.result = E_INVALIDARG;
        return response;
    }
    response.result =
        GetElementAttribute(element.hWnd, element.spAcc, element.child, identifier.isDomAria != 0, name, response.value);
    if (FAILED(response.result)) response.value.Clear();
    return response;
}

}  // namespace

AttributeResponse GetAAElemAttributeImpl(const GetElemAttrRequest& request) {
    return ReadAttribute(request.element, request.attributeName);
}

GetAttrForElementsResponse GetAttributeForAAElementsImpl(const GetAttrForElementsRequest& request) {
    GetAttrForElementsResponse response;
    response.values.reserve(request.elements.size());
    for (const AAObjectIdentifier& element : request.elements)
        response.values.push_back(ReadAttribute(element, request.attributeName).value);
    return response;
}

AttributeResponse GetNativeAttributeImpl(const GetNativeAttributeRequest& request) {
    AttributeResponse response;
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    if (!element.IsValid()) {
        LogError("Invalid AA object");
        response.result = E_INVALIDARG;
        return response;
    }
    response.result = GetNativeAttribute(element.spAcc, element.child, request.attributeName, response.value);
    if (FAILED(response.result)) response.value.Clear();
    return response;
}

}  // namespace Zorvex
