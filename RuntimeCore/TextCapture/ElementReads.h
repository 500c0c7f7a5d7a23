// The reads of an element that every capture makes.
#pragma once

#include <optional>

#include "Platform/Windows.h"

namespace Zorvex {

// A role as it was read: the result of the call, and the number; 0 when it failed or gave no number.
struct RoleRead {
    HRESULT result = E_FAIL;
    LONG role = 0;
};
RoleRead ReadAccRole(IAccessible& acc, const VARIANT& child);

// Nothing if the read failed or gave no number.
std::optional<LONG> ReadAccState(IAccessible& acc, const VARIANT& child);

}  // namespace Zorvex
