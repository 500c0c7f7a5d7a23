// The element that stands in for another one of an HTML document.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"
#include "RuntimeCore/Requests/RequestFlags.h"

namespace Zorvex::HtmlRelatedElement {

// Always null: in a document no element stands in for another. The log says so for each purpose.
CComPtr<IHTMLElement> Find(IHTMLElement* element, RelatedElementKind purpose);

}  // namespace Zorvex::HtmlRelatedElement
