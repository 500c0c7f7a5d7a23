// The COM library: apartments per thread. One class is registered, that of XML documents.
#include "Platform/Simulated/Sdk/SystemState.h"
#include "Platform/Simulated/XmlDocuments.h"

namespace Simulated {
namespace {
thread_local int t_depth = 0;
thread_local DWORD t_model = 0;
}  // namespace

std::vector<CoInitializeCall> CoInitializeCalls() {
    std::lock_guard guard(State().lock);
    return State().coInitializeCalls;
}
int ComInitializationDepth() { return t_depth; }
void FailNextCoInitialize(HRESULT result) {
    std::lock_guard guard(State().lock);
    State().nextCoInitialize = result;
}

}  // namespace Simulated

using namespace Simulated;

HRESULT CoInitializeEx(void*, DWORD model) {
    const DWORD thread = GetCurrentThreadId();
    std::lock_guard guard(State().lock);
    HRESULT result = State().nextCoInitialize;
    State().nextCoInitialize = S_OK;
    if (SUCCEEDED(result)) {
        if (t_depth == 0) {
            t_model = model & COINIT_APARTMENTTHREADED;
            t_depth = 1;
            result = S_OK;
        } else if (t_model != (model & COINIT_APARTMENTTHREADED)) {
            result = RPC_E_CHANGED_MODE;
        } else {
            ++t_depth;
            result = S_FALSE;
        }
    }
    State().coInitializeCalls.push_back({thread, model, result});
    return result;
}

void CoUninitialize() {
    if (t_depth > 0) --t_depth;
}

HRESULT CoCreateInstance(REFCLSID classId, IUnknown*, DWORD, REFIID riid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    return CreateXmlDocument(classId, riid, object);
}

HRESULT CLSIDFromProgID(LPCOLESTR programId, CLSID* classId) {
    if (!classId) return E_POINTER;
    *classId = {};
    return XmlClassFromProgId(programId, classId);
}
