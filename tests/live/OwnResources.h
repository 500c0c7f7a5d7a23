// What the process that asks holds of things that can leak.
#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Windows.h"

#include <winternl.h>

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

// How many references a library has in this 64-bit process; 0 if it isn't there. Read from the system's list of
// libraries, as no call tells.
inline std::uint32_t CountReferences(const wchar_t* fileName) {
    constexpr std::size_t countOffset = 0x6C;  // of the count in an entry of the list
    const HMODULE library = GetModuleHandleW(fileName);
    if (!library) return 0;
    const FARPROC current = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetCurrentPeb");
    const LIST_ENTRY& head = reinterpret_cast<PEB*(WINAPI*)()>(reinterpret_cast<void*>(current))()->Ldr->InMemoryOrderModuleList;
    for (const LIST_ENTRY* link = head.Flink; link != &head; link = link->Flink) {
        const auto* entry = CONTAINING_RECORD(link, LDR_DATA_TABLE_ENTRY, InMemoryOrderLinks);
        if (entry->DllBase != library) continue;
        return *reinterpret_cast<const USHORT*>(reinterpret_cast<const std::uint8_t*>(entry) + countOffset);
    }
    return 0;
}

inline std::uint32_t CountFreeTlsSlots() {
    std::vector<DWORD> taken;
    for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc()) taken.push_back(slot);
    for (const DWORD slot : taken) TlsFree(slot);
    return static_cast<std::uint32_t>(taken.size());
}
