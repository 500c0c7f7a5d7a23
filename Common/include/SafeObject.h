// Owner of one kernel handle.
#pragma once

#include <utility>

#include "Platform/Windows.h"

namespace Zorvex {

// Null owns nothing. INVALID_HANDLE_VALUE isn't null: test it before handing it over.
class SafeObject {
public:
    SafeObject() noexcept = default;
    explicit SafeObject(HANDLE handle) noexcept : m_handle(handle) {}
    SafeObject(SafeObject&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    SafeObject& operator=(SafeObject&& other) noexcept {
        if (this != &other) {
            Close();
            m_handle = std::exchange(other.m_handle, nullptr);
        }
        return *this;
    }
    ~SafeObject() { Close(); }

    HANDLE Get() const noexcept { return m_handle; }
    explicit operator bool() const noexcept { return m_handle != nullptr; }
    [[nodiscard]] HANDLE Detach() noexcept { return std::exchange(m_handle, nullptr); }
    // A close that fails is logged as a warning; the handle is cleared in any case.
    void Close() noexcept;

private:
    HANDLE m_handle = nullptr;
};

}  // namespace Zorvex
