// What the process that asks holds of things that can leak.
#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Windows.h"

// Counted one by one: the count that the system offers is always 0 under Wine.
inline std::uint32_t CountOwnHandles() {
    constexpr ULONG_PTR handleEnd = 4 * 4096;
    std::uint32_t count = 0;
    for (ULONG_PTR number = 4; number < handleEnd; number += 4) {
        DWORD flags = 0;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(number), &flags)) ++count;
    }
    return count;
}

inline std::uint32_t CountFreeTlsSlots() {
    std::vector<DWORD> taken;
    for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc()) taken.push_back(slot);
    for (const DWORD slot : taken) TlsFree(slot);
    return static_cast<std::uint32_t>(taken.size());
}
