// Reads the attributes of one element, each at most once.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "Common/include/CString.h"

namespace Zorvex::Search {

// Lives for one visit of one element. Names must outlive the reader: they are the constants of the tags. An answer
// is kept whether it is empty or not, and stays where it is until the next one is asked for.
class AttributeAccessPolicy {
public:
    virtual ~AttributeAccessPolicy() = default;

    const CString& GetValue(std::wstring_view name) {
        return m_texts.Get(name, [&] { return GetValueImpl(name); });
    }
    std::int64_t GetNumberValue(std::wstring_view name) {
        return m_numbers.Get(name, [&] { return GetNumberValueImpl(name); });
    }

protected:
    AttributeAccessPolicy() = default;
    AttributeAccessPolicy(const AttributeAccessPolicy&) = delete;
    AttributeAccessPolicy& operator=(const AttributeAccessPolicy&) = delete;

private:
    // A handful of names: comparing them one by one beats any tree. Most elements fail their first test, so the first
    // answer costs no memory of its own.
    template <class T>
    class Cache {
    public:
        template <class Read>
        const T& Get(std::wstring_view name, Read&& read) {
            if (!m_first) return m_first.emplace(Entry{name, read()}).value;
            if (m_first->name == name) return m_first->value;
            for (const Entry& entry : m_others)
                if (entry.name == name) return entry.value;
            return m_others.emplace_back(Entry{name, read()}).value;
        }

    private:
        struct Entry {
            std::wstring_view name;
            T value;
        };
        std::optional<Entry> m_first;
        std::vector<Entry> m_others;
    };

    virtual CString GetValueImpl(std::wstring_view name) = 0;
    virtual std::int64_t GetNumberValueImpl(std::wstring_view name) = 0;

    Cache<CString> m_texts;
    Cache<std::int64_t> m_numbers;
};

}  // namespace Zorvex::Search
