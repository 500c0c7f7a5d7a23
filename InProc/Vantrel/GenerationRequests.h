// The single questions that a client asks while it writes a selector, beside the whole ancestry.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"
#include "RuntimeCore/Requests/Catalogue20To39.h"

namespace Zorvex {

// All attributes that a selector may hold. Success says whether the element was valid.
GetSelectorAttrListResponse GetSelectorAttrListAAImpl(const GetSelectorAttrListRequest& request);
// The next step up from the element. A parent without an object comes as the identifier of its window.
GetNextParentForAAHierarchyResponse GetNextParentForAAHierarchyImpl(const GetNextParentForAAHierarchyRequest& request);
// The place of the target from 1 among the matches below the ancestor, or below the object of the ancestor's window
// where the ancestor names no container. Index -1 if the target, or an ancestor that does, isn't known, and if the
// target isn't there.
GetElementIndexResponse GetElementIndexImpl(const GetElementIndexRequest& request);

}  // namespace Zorvex
