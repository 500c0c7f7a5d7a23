// The request for an element's ancestry.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"
#include "RuntimeCore/Selectors/Generation/AncestryInfoOptions.h"

namespace Zorvex {

// The records of the target and its ancestors, the target first, as identifiers of the target's client. A walk that
// paused is no failure: `nextWindow` says where it goes on. After a failure there are no records, and `nextWindow` is
// the target's window if that was found. `relativeAncestor` may name nothing.
HRESULT GetAncestryInfo(const AAObjectIdentifier& target, const AAObjectIdentifier& relativeAncestor,
                        Generation::AncestryInfoOptions options, std::vector<AncestryNode>& records, HWND& nextWindow);

GetAncestryInfoResponse GetAncestryInfoAAImpl(const GetAncestryInfoRequest& request);

}  // namespace Zorvex
