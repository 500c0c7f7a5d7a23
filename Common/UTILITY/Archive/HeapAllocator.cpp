#include "Common/include/HeapAllocator.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "Common/include/Log.h"

namespace Zorvex {

void* HeapAllocatorBase::AllocateBytes(std::size_t size) {
    void* block = ::HeapAlloc(::GetProcessHeap(), 0, size);
    if (!block) throw std::bad_alloc();
    return block;
}

void HeapAllocatorBase::DeallocateBytes(void* block) noexcept {
    try {
        if (!block) {
            LogWarning("HeapAllocator: null pointer on deallocate");
        } else if (!::HeapFree(::GetProcessHeap(), 0, block)) {
            LogError("HeapAllocator: HeapFree failed err=%d", ::GetLastError());
        }
    } catch (...) {
        // A log line that finds no memory must not turn freeing into a failure.
    }
}

RequestBuffer& RequestBuffer::operator=(RequestBuffer&& other) noexcept {
    if (this != &other) {
        Release();
        swap(other);
    }
    return *this;
}

RequestBuffer& RequestBuffer::operator=(const RequestBuffer& other) {
    if (this != &other) {
        clear();
        reserve(other.size());
        append(other.data(), other.size());
    }
    return *this;
}

void RequestBuffer::reserve(std::size_t capacity) {
    if (capacity > max_size()) throw std::length_error("RequestBuffer: too long");
    if (capacity > this->capacity()) Reallocate(capacity);
}

void RequestBuffer::resize(std::size_t size) {
    if (size <= this->size()) {
        m_end = m_begin + size;
        return;
    }
    const std::size_t more = size - this->size();
    std::memset(Extend(more), 0, more);
}

void RequestBuffer::Grow(std::size_t more) {
    if (more > max_size() - size()) throw std::length_error("RequestBuffer: too long");
    const std::size_t old = capacity();
    const std::size_t byHalf = old > max_size() - old / 2 ? max_size() : old + old / 2;
    Reallocate(std::max(size() + more, byHalf));
}

void RequestBuffer::Reallocate(std::size_t capacity) {
    auto* block = static_cast<std::uint8_t*>(HeapAllocatorBase::AllocateBytes(capacity));
    const std::size_t used = size();
    if (used) std::memcpy(block, m_begin, used);
    Release();
    m_begin = block;
    m_end = block + used;
    m_capacityEnd = block + capacity;
}

void RequestBuffer::Release() noexcept {
    // An empty buffer owns no block; freeing null would be logged.
    if (m_begin) HeapAllocatorBase::DeallocateBytes(m_begin);
    m_begin = m_end = m_capacityEnd = nullptr;
}

bool operator==(const RequestBuffer& a, const RequestBuffer& b) noexcept {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
}

}  // namespace Zorvex
