// The object attributes of IAccessible2: one string "name:value;name:value;", here as a map.
#pragma once

#include <string_view>
#include <vector>

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::IA2Tools {

inline constexpr wchar_t IA2_ATTRIBUTE_TAG[] = L"tag";
inline constexpr wchar_t IA2_ATTRIBUTE_CLASS[] = L"class";

// Names and values in the order of the string, all in lower case. Duplicates are kept.
class AttributeMap {
public:
    void Clear();
    void Add(CString name, CString value);
    std::size_t Size() const { return m_names.size(); }
    const CString& NameAt(std::size_t index) const { return m_names[index]; }
    const CString& ValueAt(std::size_t index) const { return m_values[index]; }
    // The first value of that name, or null. The name is compared as it stands.
    const CString* Find(std::wstring_view name) const;

private:
    std::vector<CString> m_names;
    std::vector<CString> m_values;
};

// Splits an attribute string. There are no escapes; runs of delimiters before a token are skipped.
void ParseAttributes(std::wstring_view text, AttributeMap& mapAttr);

// All attributes of the element. `mapAttr` is untouched when the string can't be read.
HRESULT GetAllAttributes(IAccessible* pAccElem, AttributeMap& mapAttr);

// The first value of that name in any case, in lower case; an empty text and S_OK if there is none.
HRESULT GetAttribute(IAccessible* pAccElem, std::wstring_view name, CString& out_value);

}  // namespace Zorvex::IA2Tools
