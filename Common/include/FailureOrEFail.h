// The failure to report where a call failed, or gave nothing under a success.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex {

// The result itself if it is a failure, else E_FAIL.
constexpr HRESULT FailureOrEFail(HRESULT result) { return FAILED(result) ? result : E_FAIL; }

}  // namespace Zorvex
