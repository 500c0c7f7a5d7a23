// The process heap and the task allocator.
#include <atomic>
#include <cstdlib>
#include <cstring>

#include "Platform/Simulated/Sdk/SystemState.h"

namespace Simulated {
namespace {

constexpr std::size_t KindCount = 4;
// The size stands before the block, in a header that keeps the alignment of the block.
constexpr std::size_t HeaderSize = 16;

std::atomic<int> g_blocks[KindCount];
std::atomic<unsigned> g_untilFailure[KindCount];
std::atomic<DWORD> g_freeError{0};
std::atomic<std::size_t> g_heapBytes{0};
std::atomic<std::size_t> g_heapPeak{0};

void* AllocateBlock(Allocation kind, SIZE_T size) {
    if (AllocationFails(kind) || size > LargestBlock) return nullptr;
    auto* header = static_cast<char*>(std::malloc(HeaderSize + (size ? size : 1)));
    if (!header) return nullptr;
    std::memcpy(header, &size, sizeof size);
    CountBlock(kind, 1);
    return header + HeaderSize;
}

SIZE_T FreeBlock(Allocation kind, void* block) {
    char* header = static_cast<char*>(block) - HeaderSize;
    SIZE_T size = 0;
    std::memcpy(&size, header, sizeof size);
    std::free(header);
    CountBlock(kind, -1);
    return size;
}

}  // namespace

bool AllocationFails(Allocation kind) {
    std::atomic<unsigned>& left = g_untilFailure[static_cast<std::size_t>(kind)];
    unsigned value = left.load(std::memory_order_relaxed);
    while (value != 0)
        if (left.compare_exchange_weak(value, value - 1)) return value == 1;
    return false;
}
void CountBlock(Allocation kind, int change) { g_blocks[static_cast<std::size_t>(kind)] += change; }
void DisarmAllocationFailures() {
    for (auto& left : g_untilFailure) left = 0;
    g_freeError = 0;
}

int OutstandingBlocks(Allocation kind) { return g_blocks[static_cast<std::size_t>(kind)]; }
std::size_t OutstandingHeapBytes() { return g_heapBytes; }
std::size_t PeakHeapBytes() { return g_heapPeak; }
void ResetHeapPeak() { g_heapPeak = g_heapBytes.load(); }
void FailNextHeapFree(DWORD error) { g_freeError = error; }
void FailAllocation(Allocation kind, unsigned nth) { g_untilFailure[static_cast<std::size_t>(kind)] = nth; }

}  // namespace Simulated

using namespace Simulated;

HANDLE GetProcessHeap() { return reinterpret_cast<HANDLE>(std::uintptr_t{0x10}); }

void* HeapAlloc(HANDLE heap, DWORD flags, SIZE_T size) {
    if (heap != GetProcessHeap()) return nullptr;
    void* block = AllocateBlock(Allocation::Heap, size);
    if (!block) return nullptr;
    if (flags & HEAP_ZERO_MEMORY) std::memset(block, 0, size);
    const std::size_t now = g_heapBytes += size;
    std::size_t peak = g_heapPeak.load();
    while (now > peak && !g_heapPeak.compare_exchange_weak(peak, now)) {
    }
    return block;
}

BOOL HeapFree(HANDLE heap, DWORD, void* block) {
    if (heap != GetProcessHeap()) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    if (const DWORD error = g_freeError.exchange(0)) {
        SetLastError(error);
        return FALSE;
    }
    if (block) g_heapBytes -= FreeBlock(Allocation::Heap, block);
    return TRUE;
}

void* CoTaskMemAlloc(SIZE_T size) { return AllocateBlock(Allocation::Task, size); }
void CoTaskMemFree(void* block) {
    if (block) FreeBlock(Allocation::Task, block);
}
