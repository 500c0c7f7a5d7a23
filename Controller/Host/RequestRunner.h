// Serves one exchange on the thread that called.
#pragma once

#include "Controller/Host/HostProtocol.h"

namespace Zorvex::Host {

// `name` is the section's. Opens it, claims the request, runs it and puts the answer back. Does nothing when the
// section isn't there or the request was given up; answers Busy when another request runs in this process. Holds no
// handle and no view afterwards.
void ServeExchange(const wchar_t* name);

}  // namespace Zorvex::Host
