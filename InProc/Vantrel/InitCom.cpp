#include "InProc/Vantrel/InitCom.h"

#include "Common/include/Log.h"
#include "Platform/Windows.h"

namespace Zorvex {

namespace {
INIT_ONCE g_comOnce{};
}

void InitCOM() {
    BOOL pending = FALSE;
    if (!::InitOnceBeginInitialize(&g_comOnce, 0, &pending, nullptr) || !pending) return;
    [] {
        const HRESULT result = ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        if (FAILED(result)) {
            LogError("InitCOM: CoInitializeEx failed, hRes=0x%X", result);
            return;
        }
        LogVerbose("InitCOM: CoInitializeEx succeeded.");
        // The thread was initialised already: the extra count goes back at once.
        if (result == S_FALSE) ::CoUninitialize();
    }();
    ::InitOnceComplete(&g_comOnce, 0, nullptr);
}

}  // namespace Zorvex
