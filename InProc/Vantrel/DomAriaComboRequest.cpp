#include "InProc/Vantrel/DomAriaComboRequest.h"

#include "Common/include/Log.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/Interaction/DomAriaCombo.h"

namespace Zorvex {

ResultResponse ExpandDomAriaComboImpl(const ExpandDomAriaComboRequest& request) {
    LogVerbose("calling LookupIdentifier");
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    if (!element.IsValid()) return {S_OK};
    auto comboBox = DomAriaComboBox::CreateFromAccessible(element.hWnd, element.spAcc, request.element.isDomAria != 0);
    if (!comboBox) return {S_OK};
    return {request.expand ? comboBox->TriggerOptionsListLoad() : comboBox->CollapseItems()};
}

}  // namespace Zorvex
