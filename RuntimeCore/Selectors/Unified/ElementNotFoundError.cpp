#include "RuntimeCore/Selectors/Unified/ElementNotFoundError.h"

#include <utility>

#include "Common/include/JsonSerializer/PackJsonArray.h"
#include "Common/include/Archive.h"

namespace Zorvex::Search {

namespace {

constexpr HRESULT kTagNotFound = static_cast<HRESULT>(0x800402EC);
constexpr HRESULT kAttributeValueNotFound = static_cast<HRESULT>(0x800402ED);
constexpr HRESULT kValueNotFound = static_cast<HRESULT>(0x800402EE);

}  // namespace

ElementNotFoundError::ElementNotFoundError(CString tag, CString attribute, CString value, bool flagA, bool flagB)
    : m_tag(std::move(tag)), m_attribute(std::move(attribute)), m_value(std::move(value)), m_flagA(flagA), m_flagB(flagB) {}

void ElementNotFoundError::WriteToArchive(Archive& archive) const {
    archive.write(m_tag).write(m_attribute).write(m_value).write(m_flagA).write(m_flagB);
}

void ElementNotFoundError::ReadFromArchive(Archive& archive) {
    archive.read(m_tag).read(m_attribute).read(m_value).read(m_flagA).read(m_flagB);
}

ErrorInfo ElementNotFoundError::ToErrorInfo() const {
    ErrorInfo info;
    PackJsonArray parameters;
    parameters.Add(m_tag);
    if (m_value.empty()) {
        info.code = kTagNotFound;
    } else if (m_attribute.empty()) {
        info.code = kValueNotFound;
        parameters.Add(m_value);
    } else {
        info.code = kAttributeValueNotFound;
        parameters.Add(m_attribute).Add(m_value);
    }
    info.parameters = parameters.ToText();
    return info;
}

bool ElementNotFoundError::Equals(const ISearchErrorBase& other) const {
    if (GetErrorId() != other.GetErrorId()) return false;
    const auto* same = dynamic_cast<const ElementNotFoundError*>(&other);
    return same && m_tag == same->m_tag && m_attribute == same->m_attribute && m_value == same->m_value &&
           m_flagA == same->m_flagA && m_flagB == same->m_flagB;
}

}  // namespace Zorvex::Search
