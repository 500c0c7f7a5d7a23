// Questions about processes and the system they run on.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::NProcess {

// The full path of the process's image. Empty, with an error in the log, if the process can't be asked.
CString GetProcessPath(DWORD pid);
// The file name of the image in lower case. Empty as above.
CString GetProcessName(DWORD pid);
// The same for the process that owns a window. Empty for an invalid window, without a line in the log.
CString GetWindowProcessName(HWND hWnd);

// The true version of the system, whatever the application claims to be made for. False if the system doesn't say.
bool GetOsVersion(RTL_OSVERSIONINFOW& out_info);

}  // namespace Zorvex::NProcess
