#include "RuntimeCore/IA2ToolsAttributes.h"

#include <algorithm>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComPtr.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"
#include "RuntimeCore/IA2Tools.h"
#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex::IA2Tools {

namespace {

CString ToLower(std::wstring_view text) {
    CString lower(text);
    for (wchar_t& unit : lower) unit = Zorvex::ToLower(unit);
    return lower;
}

// Cuts the next token off the front of `rest`: the delimiters before it are skipped, the one behind it goes with it.
std::wstring_view TakeToken(std::wstring_view& rest, wchar_t delimiter) {
    const std::size_t start = std::min(rest.find_first_not_of(delimiter), rest.size());
    const std::size_t end = std::min(rest.find(delimiter, start), rest.size());
    const std::wstring_view token = rest.substr(start, end - start);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return token;
}

}  // namespace

void AttributeMap::Clear() {
    m_names.clear();
    m_values.clear();
}

void AttributeMap::Add(CString name, CString value) {
    m_names.push_back(std::move(name));
    m_values.push_back(std::move(value));
}

const CString* AttributeMap::Find(std::wstring_view name) const {
    const auto found = std::ranges::find(m_names, name);
    return found == m_names.end() ? nullptr : &m_values[static_cast<std::size_t>(found - m_names.begin())];
}

void ParseAttributes(std::wstring_view text, AttributeMap& mapAttr) {
    mapAttr.Clear();
    for (;;) {
        const std::wstring_view name = TakeToken(text, L':');
        if (name.empty()) return;
        const std::wstring_view value = TakeToken(text, L';');
        if (value.empty()) return;
        mapAttr.Add(ToLower(name), ToLower(value));
    }
}

HRESULT GetAllAttributes(IAccessible* pAccElem, AttributeMap& mapAttr) {
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "IA2Tools::GetAllAttributes IAccessible pointer is null");
    CComPtr<IAccessible2> spIA2;
    HRESULT result = GetIA2FromAccElem(pAccElem, spIA2);
    if (FAILED(result) || !spIA2) {
        CallFailed("GetIA2FromAccElem(pAccElem, spIA2)", result, "IA2Tools::GetAllAttributes Cannot get IAccessible2");
        return FailureOrEFail(result);
    }
    CComBSTR bstrAttrAll;
    result = spIA2->get_attributes(&bstrAttrAll);
    if (FAILED(result))
        return CallFailed("spIA2->get_attributes(&bstrAttrAll)", result, "IA2Tools::GetAllAttributes IA2->get_attributes(...) failed");
    ParseAttributes(bstrAttrAll.View(), mapAttr);
    LogVerbose("IA2Tools::GetAllAttributes End attrCount=%d", mapAttr.Size());
    return S_OK;
}

HRESULT GetAttribute(IAccessible* pAccElem, std::wstring_view name, CString& out_value) {
    out_value.clear();
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "IA2Tools::GetAttribute IAccessible pointer is null");
    AttributeMap mapAttr;
    const HRESULT result = GetAllAttributes(pAccElem, mapAttr);
    if (FAILED(result))
        return CallFailed("IA2Tools::GetAllAttributes(pAccElem, mapAttr)", result, "IA2Tools::GetAttribute GetAllAttributes failed");
    if (const CString* value = mapAttr.Find(ToLower(name))) out_value = *value;
    return S_OK;
}

}  // namespace Zorvex::IA2Tools
