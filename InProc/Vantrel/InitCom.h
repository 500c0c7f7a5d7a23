// The one-time initialisation of COM.
#pragma once

namespace Zorvex {

// Makes the thread of the process's first request a single-threaded apartment, once, for the life of the process.
// A failure is logged and doesn't stop the request.
void InitCOM();

}  // namespace Zorvex
