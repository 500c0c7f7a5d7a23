// Memory of the process heap, which both sides of the export share whatever runtime each is linked with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <utility>

#include "Platform/Windows.h"

namespace Zorvex {

// A standard allocator over HeapAlloc and HeapFree. allocate throws std::bad_alloc; deallocate never throws: a null
// pointer is logged as a warning, a failing HeapFree as an error.
struct HeapAllocatorBase {
    static void* AllocateBytes(std::size_t size);
    static void DeallocateBytes(void* block) noexcept;
};

template <class T>
struct HeapAllocator {
    using value_type = T;

    HeapAllocator() noexcept = default;
    template <class Other>
    HeapAllocator(const HeapAllocator<Other>&) noexcept {}

    T* allocate(std::size_t count) {
        // A size that overflows can't be had either.
        const std::size_t largest = std::numeric_limits<std::size_t>::max() / sizeof(T);
        return static_cast<T*>(HeapAllocatorBase::AllocateBytes(count > largest ? std::size_t(-1) : count * sizeof(T)));
    }
    void deallocate(T* block, std::size_t) noexcept { HeapAllocatorBase::DeallocateBytes(block); }

    template <class Other>
    bool operator==(const HeapAllocator<Other>&) const noexcept { return true; }
};

// The bytes of one request or response. Its three pointers are what crosses the export, so neither their order nor
// their meaning may change. It has the interface of a vector of bytes, with one difference that a standard vector
// can't promise: it grows by half.
class RequestBuffer {
public:
    using value_type = std::uint8_t;

    RequestBuffer() noexcept = default;
    RequestBuffer(const std::uint8_t* first, const std::uint8_t* last) { append(first, static_cast<std::size_t>(last - first)); }
    RequestBuffer(std::initializer_list<std::uint8_t> bytes) { append(bytes.begin(), bytes.size()); }
    RequestBuffer(const RequestBuffer& other) { append(other.data(), other.size()); }
    RequestBuffer(RequestBuffer&& other) noexcept { swap(other); }
    ~RequestBuffer() { Release(); }

    // Frees what this buffer held before the other's block is taken over.
    RequestBuffer& operator=(RequestBuffer&& other) noexcept;
    RequestBuffer& operator=(const RequestBuffer& other);

    std::uint8_t* data() noexcept { return m_begin; }
    const std::uint8_t* data() const noexcept { return m_begin; }
    std::uint8_t* begin() noexcept { return m_begin; }
    std::uint8_t* end() noexcept { return m_end; }
    const std::uint8_t* begin() const noexcept { return m_begin; }
    const std::uint8_t* end() const noexcept { return m_end; }
    std::size_t size() const noexcept { return static_cast<std::size_t>(m_end - m_begin); }
    std::size_t capacity() const noexcept { return static_cast<std::size_t>(m_capacityEnd - m_begin); }
    bool empty() const noexcept { return m_begin == m_end; }
    std::uint8_t& operator[](std::size_t index) noexcept { return m_begin[index]; }
    const std::uint8_t& operator[](std::size_t index) const noexcept { return m_begin[index]; }
    static constexpr std::size_t max_size() noexcept {
        return static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max());
    }

    // Throws std::length_error above max_size and std::bad_alloc when the heap has no room.
    void reserve(std::size_t capacity);
    // New bytes are 0.
    void resize(std::size_t size);
    void push_back(std::uint8_t byte) { *Extend(1) = byte; }
    void append(const void* bytes, std::size_t count) {
        if (count) std::memcpy(Extend(count), bytes, count);
    }
    void clear() noexcept { m_end = m_begin; }
    void swap(RequestBuffer& other) noexcept {
        std::swap(m_begin, other.m_begin);
        std::swap(m_end, other.m_end);
        std::swap(m_capacityEnd, other.m_capacityEnd);
    }

    // Room for `count` more bytes at the end, which count as used from now on; the caller fills them.
    std::uint8_t* Extend(std::size_t count) {
        if (count > static_cast<std::size_t>(m_capacityEnd - m_end)) Grow(count);
        std::uint8_t* place = m_end;
        m_end += count;
        return place;
    }

private:
    void Grow(std::size_t more);
    void Reallocate(std::size_t capacity);
    void Release() noexcept;

    std::uint8_t* m_begin = nullptr;
    std::uint8_t* m_end = nullptr;
    std::uint8_t* m_capacityEnd = nullptr;
};

static_assert(sizeof(RequestBuffer) == 3 * sizeof(void*), "the layout is shared with the caller of the export");

bool operator==(const RequestBuffer& a, const RequestBuffer& b) noexcept;

}  // namespace Zorvex
