// Reads the attributes of one element, each at most once.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Common/include/CString.h"

namespace Zorvex::Search {

// Lives for one visit of one element. Names must outlive the reader: they are the constants of the tags. An answer
// is kept whether it is empty or not, and stays where it is until the next one is asked for.
class AttributeAccessPolicy {
public:
    virtual ~AttributeAccessPolicy() = default;

    const CString& GetValue(std::wstring_view name) {
        return Cached(m_texts, name, [&] { return GetValueImpl(name); });
    }
    std::int64_t GetNumberValue(std::wstring_view name) {
        return Cached(m_numbers, name, [&] { return GetNumberValueImpl(name); });
    }

protected:
    AttributeAccessPolicy() = default;
    AttributeAccessPolicy(const AttributeAccessPolicy&) = delete;
    AttributeAccessPolicy& operator=(const AttributeAccessPolicy&) = delete;

private:
    template <class T>
    struct Entry {
        std::wstring_view name;
        T value;
    };

    virtual CString GetValueImpl(std::wstring_view name) = 0;
    virtual std::int64_t GetNumberValueImpl(std::wstring_view name) = 0;

    // A handful of names: comparing them one by one beats any tree.
    template <class T, class Read>
    static const T& Cached(std::vector<Entry<T>>& cache, std::wstring_view name, Read&& read) {
        for (const Entry<T>& entry : cache)
            if (entry.name == name) return entry.value;
        return cache.emplace_back(Entry<T>{name, read()}).value;
    }

    std::vector<Entry<CString>> m_texts;
    std::vector<Entry<std::int64_t>> m_numbers;
};

}  // namespace Zorvex::Search
