// The handle of the library itself, kept from the moment it is loaded.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex {

// What DllMain does: keeps the handle on attach and always answers TRUE. `reserved` is not null when the library
// is linked statically, which is complained about and allowed. There is no work on detach.
BOOL OnDllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

// Null before the library was attached, as in a program that links the server statically.
HINSTANCE ModuleHandle();

}  // namespace Zorvex
