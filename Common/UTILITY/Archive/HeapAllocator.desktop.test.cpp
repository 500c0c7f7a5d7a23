#include <gtest/gtest.h>

#include <new>

#include "Common/include/HeapAllocator.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

TEST(HeapAllocatorOnASimulatedHeap, AllocationThatFailsThrowsBadAlloc) {
    HeapAllocator<int> allocator;
    Simulated::FailAllocation(Simulated::Allocation::Heap, 1);
    EXPECT_THROW((void)allocator.allocate(1), std::bad_alloc);
}

TEST(HeapAllocatorOnASimulatedHeap, BlocksComeFromTheProcessHeapAndGoBack) {
    const int before = Simulated::OutstandingBlocks(Simulated::Allocation::Heap);
    HeapAllocator<int> allocator;
    int* block = allocator.allocate(3);
    EXPECT_EQ(Simulated::OutstandingBlocks(Simulated::Allocation::Heap), before + 1);
    allocator.deallocate(block, 3);
    EXPECT_EQ(Simulated::OutstandingBlocks(Simulated::Allocation::Heap), before);
}

TEST(HeapAllocatorOnASimulatedHeap, FailureOfFreeingIsAnErrorInTheLogAndNoException) {
    LogCapture log;
    void* block = HeapAllocatorBase::AllocateBytes(8);
    Simulated::FailNextHeapFree(87);
    HeapAllocatorBase::DeallocateBytes(block);
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines()[0].front(), 'E');
    EXPECT_TRUE(log.Contains("HeapAllocator: HeapFree failed err=87"));
    HeapAllocatorBase::DeallocateBytes(block);
}

}  // namespace
}  // namespace Zorvex::Testing
