// A selector of which some tag found no element.
#pragma once

#include "RuntimeCore/Selectors/Unified/ISearchErrorBase.h"

namespace Zorvex::Search {

// The search makes it with all fields empty or false. The controller fills them when it knows which tag, attribute
// and value failed, and uses the same class on the way back.
class ElementNotFoundError final : public ISearchErrorBase {
public:
    static constexpr std::int32_t kErrorId = 0;

    ElementNotFoundError() = default;
    ElementNotFoundError(CString tag, CString attribute, CString value, bool flagA = false, bool flagB = false);

    std::int32_t GetErrorId() const override { return kErrorId; }
    void WriteToArchive(Archive& archive) const override;
    void ReadFromArchive(Archive& archive);
    // Which texts are present decides the code and the parameters: 0x800402EC [tag], 0x800402EE [tag, value],
    // 0x800402ED [tag, attribute, value].
    ErrorInfo ToErrorInfo() const override;
    bool GetFlagB() const override { return m_flagB; }
    bool Equals(const ISearchErrorBase& other) const override;

    const CString& Tag() const { return m_tag; }
    const CString& Attribute() const { return m_attribute; }
    const CString& Value() const { return m_value; }
    bool GetFlagA() const { return m_flagA; }

private:
    CString m_tag;
    CString m_attribute;
    CString m_value;
    bool m_flagA = false;
    bool m_flagB = false;
};

}  // namespace Zorvex::Search
