#include "RuntimeCore/RelatedElement/HtmlRelatedElement.h"

#include "Common/include/Log.h"

namespace Zorvex::HtmlRelatedElement {

CComPtr<IHTMLElement> Find(IHTMLElement* element, RelatedElementKind purpose) {
    LogVerbose("Find related element with purpose: %d", purpose);
    if (!element) LogError("The element is null");
    else if (ShouldLog(Severity::Verbose)) LogStream(Severity::Verbose) << "Not implemented for purpose: " << static_cast<int>(purpose);
    return nullptr;
}

}  // namespace Zorvex::HtmlRelatedElement
