// Reading an element's state bits, and waiting for them.
#pragma once

#include <optional>

#include "Platform/Windows.h"

namespace Zorvex::AAUtil {

constexpr DWORD StatePollInterval = 100;  // ms between two looks
constexpr DWORD StateTimeout = 3000;      // ms until WaitForState gives up
constexpr DWORD LocationSteadyTime = 300; // ms for which a location must stay the same

// True in `out_bResult` if all bits of `lStateOn` are set and none of `lStateOff`; a mask of 0 asks nothing.
// E_INVALIDARG for a null element; the code of a failed read; E_FAIL for a state that isn't a VT_I4.
// `out_bResult` is false on failure.
HRESULT HasAAState(IAccessible* pAA, const VARIANT& varChild, LONG lStateOn, LONG lStateOff, bool& out_bResult);

// Looks every 100 ms until HasAAState is true, and, where `lStateOff` holds STATE_SYSTEM_OFFSCREEN, until the
// location has been the same for 300 ms. Pumps the thread's messages meanwhile, since the element may be
// served by this very thread. S_OK when reached, S_FALSE after 3,000 ms, a failure when a read fails.
HRESULT WaitForState(IAccessible* pAA, const VARIANT& varChild, LONG lStateOn, LONG lStateOff, bool& out_bResult);

// Whether STATE_SYSTEM_READONLY is set on the container as a whole, which counts also where the element is one of its
// simple children. Nothing, without a line, if the state can't be read or is no VT_I4. `acc` must not be null.
std::optional<bool> IsReadOnlyContainer(IAccessible* acc);

// True if STATE_SYSTEM_UNAVAILABLE is set; false, with an error line, if the state can't be read.
bool IsDisabledElement(IAccessible* spAcc, const VARIANT& varChild);

}  // namespace Zorvex::AAUtil
