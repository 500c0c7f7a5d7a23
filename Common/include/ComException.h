// The exception that carries a failing result code out of code that has no result of its own.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex {

// Thrown by value, caught by reference. It has no base class: nothing but its own type catches it.
class ComException {
public:
    explicit ComException(HRESULT result) noexcept : m_result(result) {}
    HRESULT Error() const noexcept { return m_result; }

private:
    HRESULT m_result;
};

// Throws ComException when `result` is a failure.
inline void ThrowIfFailed(HRESULT result) {
    if (FAILED(result)) throw ComException(result);
}

}  // namespace Zorvex
