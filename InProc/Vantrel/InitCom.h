// The one-time initialisation of COM.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex {

// Makes the thread of the process's first request a single-threaded apartment, once, for the life of the process.
// A failure is logged and doesn't stop the request.
void InitCOM();

// The same under a guard of the caller's, as a test brings it: once for each guard.
void InitCOM(INIT_ONCE& once);

}  // namespace Zorvex
