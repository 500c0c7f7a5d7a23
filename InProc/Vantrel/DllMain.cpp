// The library's entry point. It lies outside the static library of the server, so that tests and tools can link
// the server without becoming a library themselves.
#include "Common/UTILITY/ModuleHandle.h"
#include "Platform/Windows.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    return Zorvex::OnDllMain(instance, reason, reserved);
}
