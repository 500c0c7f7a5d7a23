#include "InProc/Vantrel/ElementActions.h"

#include "Common/include/CComBSTR.h"
#include "Common/include/Log.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/Interaction/DomAriaUtilities.h"

namespace Zorvex {

namespace {

bool FocusWindow(HWND hWnd) {
    // Null is also the answer where nothing had the focus before; it counts as a failure all the same.
    if (!::SetFocus(hWnd)) {
        LogError("SetFocus(WND) failed");
        return false;
    }
    LogVerbose("the focus has been set to the WND element");
    return true;
}

bool FocusDomAria(const AAElement& element) {
    if (!DomAriaSetFocus(element.hWnd, element.spAcc, element.child)) {
        LogError("Vantrel::DomAriaSetFocus failed");
        return false;
    }
    LogVerbose("the focus has been set to the AA element using DomAria methods");
    return true;
}

bool FocusElement(const AAElement& element) {
    if (const HRESULT result = element.spAcc->accSelect(SELFLAG_TAKEFOCUS, element.child); FAILED(result)) {
        LogError("pAccElem->accSelect failed, hRes=0x%X", result);
        return false;
    }
    LogVerbose("the focus has been set to the AA element");
    return true;
}

}  // namespace

SuccessResponse SetFocusImpl(const SetFocusRequest& request) {
    LogVerbose("calling LookupIdentifier");
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    if (element.NamesWindow()) return {FocusWindow(element.hWnd)};
    if (element.IsValid()) return {request.element.isDomAria ? FocusDomAria(element) : FocusElement(element)};
    LogError("the target is not a valid HWND or AA element");
    return {};
}

ResultResponse DoDefaultActionImpl(const DoDefaultActionRequest& request) {
    LogVerbose("calling LookupIdentifier");
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    return {element.IsValid() ? element.spAcc->accDoDefaultAction(element.child) : E_FAIL};
}

ResultResponse ScrollIntoViewImpl(const ScrollIntoViewRequest& request) {
    LogVerbose("calling LookupIdentifier");
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    return {element.IsValid() ? DomAriaUtilities::ScrollIntoView(element.spAcc, element.child) : E_FAIL};
}

SuccessResponse WriteTextImpl(const WriteTextRequest& request) {
    LogVerbose("calling LookupIdentifier");
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    if (!element.IsValid()) {
        LogError("Invalid AA object");
        return {};
    }
    return {element.spAcc->put_accValue(element.child, CComBSTR(request.text)) == S_OK};
}

}  // namespace Zorvex
