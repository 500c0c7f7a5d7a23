// Reading an element's name from a server that may crash over it.
#pragma once

#include <optional>

#include "Common/include/CComBSTR.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

// The name of an element; empty when it failed or gave none. E_INVALIDARG for a null element or a child id that is no
// VT_I4; E_FAIL, with an error in the log, for an exception or hardware fault of the server; otherwise the code of the
// read.
HRESULT GetSafeAccName(const CaptureContext& context, IAccessible* acc, const VARIANT& child, CComBSTR& outName);

// The major version of the operating system. Nothing if it won't say.
std::optional<DWORD> GetOsMajorVersion();

// True for an element that had better be left alone: invisible buttons on the tool bar of an old browser crash when
// they are asked for their name on systems before version 6. A fault on the way answers true as well.
bool FilterOutIE8XPCrashes(const CaptureContext& context, IAccessible* acc, const VARIANT& child);

// The same for a given system, which is otherwise asked for once in a process.
bool FilterOutIE8XPCrashes(const CaptureContext& context, IAccessible* acc, const VARIANT& child,
                           std::optional<DWORD> (*osMajorVersion)());

}  // namespace Zorvex
