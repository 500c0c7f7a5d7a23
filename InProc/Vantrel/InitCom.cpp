#include "InProc/Vantrel/InitCom.h"

#include "Common/include/Log.h"
#include "Platform/Windows.h"

namespace Zorvex {

namespace {

INIT_ONCE g_comOnce{};

// Other threads wait until the work is declared done, so an exception must not pass this by.
struct Completion {
    INIT_ONCE& once;
    ~Completion() { ::InitOnceComplete(&once, 0, nullptr); }
};

}  // namespace

void InitCOM() { InitCOM(g_comOnce); }

void InitCOM(INIT_ONCE& once) {
    BOOL pending = FALSE;
    if (!::InitOnceBeginInitialize(&once, 0, &pending, nullptr) || !pending) return;
    const Completion completion{once};
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
}

}  // namespace Zorvex
