#include "InProc/Vantrel/CheckStateRequests.h"

#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/CheckState.h"
#include "RuntimeCore/Interaction/WindowFrame.h"

namespace Zorvex {

namespace {

// A native check box has a window of its own, so that an identifier may name just the window: the element is then the
// one that the window is. False, with a line in the log, for a window without an object.
bool EnterWindow(AAElement& element) {
    if (!element.NamesWindow()) return true;
    const HRESULT result = ObjectFromWindow(element.hWnd, OBJID_WINDOW, element.spAcc);
    if (FAILED(result) || !element.spAcc) {
        LogError("AccessibleObjectFromWindow failed");
        element.spAcc.Release();
        return false;
    }
    EnterFrame(element.spAcc);
    return true;
}

}  // namespace

GetIsCheckedResponse GetIsCheckedImpl(const GetIsCheckedRequest& request) {
    LogVerbose("calling LookupIdentifier");
    AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    if (!EnterWindow(element)) return {};
    GetIsCheckedResponse response;
    response.success = SUCCEEDED(AAUtil::GetIsChecked(element.spAcc, element.child, response.isChecked));
    return response;
}

ResultResponse SetIsCheckedImpl(const SetIsCheckedRequest& request) {
    LogVerbose("calling LookupIdentifier");
    AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    // A window without an object is the next step's to report.
    EnterWindow(element);
    return {AAUtil::SetIsChecked(element.spAcc, element.child, request.wantedState)};
}

}  // namespace Zorvex
