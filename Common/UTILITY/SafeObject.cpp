#include "Common/include/SafeObject.h"

#include "Common/include/Log.h"

namespace Zorvex {

void SafeObject::Close() noexcept {
    HANDLE handle = std::exchange(m_handle, nullptr);
    if (handle && !::CloseHandle(handle)) LogWarning("Closing safe handle failed, last error=%u", ::GetLastError());
}

}  // namespace Zorvex
