#include "RuntimeCore/Enablement/AAEventProc.h"

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"

namespace Zorvex::N_AAEventProc {

void CALLBACK AdobeTrigger(HWINEVENTHOOK, DWORD event, HWND hwnd, LONG idObject, LONG idChild, DWORD dwEventThread,
                           DWORD dwmsEventTime) {
    try {
        LogVerbose("N_AAEventProc::AdobeTrigger start event=0x%x hwnd=0x%p idObject=0x%x idChild=0x%x dwEventThread=0x%x dwmsEventTime=0x%x",
                   event, hwnd, idObject, idChild, dwEventThread, dwmsEventTime);
        CComPtr<IAccessible> object;
        CComVariant child;
        const HRESULT hResult =
            ::AccessibleObjectFromEvent(hwnd, static_cast<DWORD>(idObject), static_cast<DWORD>(idChild), &object, &child);
        LogVerbose("N_AAEventProc::AdobeTrigger end hResult=0x%x", hResult);
    } catch (...) {
        // The frames below are the system's. Whoever else hears the event isn't to be hindered.
    }
}

}  // namespace Zorvex::N_AAEventProc
