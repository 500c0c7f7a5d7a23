// The counterpart of AARelatedElement for elements of HTML documents, for whoever links this library and has them in
// hand; no request of the server does.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"
#include "RuntimeCore/Requests/RequestFlags.h"

namespace Zorvex::HtmlRelatedElement {

// Always null: in a document no element stands in for another. The log says so for each purpose.
CComPtr<IHTMLElement> Find(IHTMLElement* element, RelatedElementKind purpose);

}  // namespace Zorvex::HtmlRelatedElement
