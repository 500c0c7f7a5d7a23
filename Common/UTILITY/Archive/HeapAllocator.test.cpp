#include "Common/include/HeapAllocator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <stdexcept>
#include <vector>

#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

TEST(HeapAllocator, ServesAStandardVector) {
    std::vector<int, HeapAllocator<int>> numbers;
    for (int i = 0; i < 1000; ++i) numbers.push_back(i);
    EXPECT_EQ(numbers[999], 999);
}

TEST(HeapAllocator, NullOnDeallocateIsAWarningAndNothingElse) {
    Testing::LogCapture log;
    HeapAllocatorBase::DeallocateBytes(nullptr);
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines()[0].front(), 'W');
    EXPECT_TRUE(log.Contains("HeapAllocator: null pointer on deallocate"));
}

TEST(HeapAllocator, SizesThatOverflowThrowBadAlloc) {
    HeapAllocator<std::uint64_t> allocator;
    EXPECT_THROW((void)allocator.allocate(std::size_t(-1) / 4), std::bad_alloc);
}

TEST(RequestBuffer, IsThreePointersInTheOrderBeginEndCapacityEnd) {
    RequestBuffer buffer{1, 2, 3};
    buffer.reserve(10);
    const std::uint8_t* pointers[3];
    static_assert(sizeof pointers == sizeof buffer);
    std::memcpy(pointers, static_cast<const void*>(&buffer), sizeof pointers);
    EXPECT_EQ(pointers[0], buffer.data());
    EXPECT_EQ(pointers[1], buffer.data() + 3);
    EXPECT_EQ(pointers[2], buffer.data() + 10);
}

TEST(RequestBuffer, AnEmptyOneIsThreeNulls) {
    RequestBuffer buffer;
    EXPECT_EQ(buffer.data(), nullptr);
    EXPECT_EQ(buffer.size(), 0u);
    EXPECT_EQ(buffer.capacity(), 0u);
}

TEST(RequestBuffer, GrowsByHalfOrToTheSizeRequired) {
    RequestBuffer buffer;
    buffer.push_back(1);
    EXPECT_EQ(buffer.capacity(), 1u);  // 1 required, half of nothing more
    buffer.push_back(2);
    EXPECT_EQ(buffer.capacity(), 2u);
    buffer.push_back(3);
    EXPECT_EQ(buffer.capacity(), 3u);
    buffer.push_back(4);
    EXPECT_EQ(buffer.capacity(), 4u);
    buffer.push_back(5);
    EXPECT_EQ(buffer.capacity(), 6u);
    buffer.append("0123456789", 10);
    EXPECT_EQ(buffer.capacity(), 15u);  // required 15, half would be 9
    buffer.push_back(6);
    EXPECT_EQ(buffer.capacity(), 22u);
}

TEST(RequestBuffer, LimitIsTheLargestSignedSize) {
    RequestBuffer buffer;
    EXPECT_EQ(RequestBuffer::max_size(), std::size_t(-1) / 2);
    EXPECT_THROW(buffer.reserve(RequestBuffer::max_size() + 1), std::length_error);
    EXPECT_THROW(buffer.reserve(RequestBuffer::max_size()), std::bad_alloc);
    EXPECT_TRUE(buffer.empty());
}

TEST(RequestBuffer, MovingInFreesTheOldBlockFirstAndTakesTheNew) {
    Testing::LogCapture log;
    RequestBuffer target{1, 2, 3};
    RequestBuffer source{4, 5};
    const std::uint8_t* block = source.data();
    target = std::move(source);
    EXPECT_EQ(target.data(), block);
    EXPECT_EQ(target.size(), 2u);
    EXPECT_TRUE(source.empty());
    EXPECT_EQ(source.data(), nullptr);
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST(RequestBuffer, CopiesAreTheirOwn) {
    RequestBuffer first{1, 2, 3};
    RequestBuffer second(first);
    second[0] = 9;
    EXPECT_EQ(first[0], 1);
    second = first;
    EXPECT_EQ(second, first);
    auto& same = second;
    second = same;
    EXPECT_EQ(second, first);
}

TEST(RequestBuffer, ResizeFillsWithZero) {
    RequestBuffer buffer{1};
    buffer.resize(3);
    EXPECT_EQ(buffer, (RequestBuffer{1, 0, 0}));
    buffer.resize(1);
    EXPECT_EQ(buffer, RequestBuffer{1});
}

}  // namespace
}  // namespace Zorvex
