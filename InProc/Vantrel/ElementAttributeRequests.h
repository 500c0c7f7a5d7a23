// Requests that read attributes of elements, one by one.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"
#include "RuntimeCore/Requests/Catalogue20To39.h"

namespace Zorvex {

AttributeResponse GetAAElemAttributeImpl(const GetElemAttrRequest& request);
// One value an element; an element whose attribute failed gets an empty one.
GetAttrForElementsResponse GetAttributeForAAElementsImpl(const GetAttrForElementsRequest& request);
// The platform's own properties under their own names.
AttributeResponse GetNativeAttributeImpl(const GetNativeAttributeRequest& request);

}  // namespace Zorvex
