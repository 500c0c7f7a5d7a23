// A wanted text: a wildcard pattern, a regular expression or a text to be resembled.
#pragma once

#include "RuntimeCore/Selectors/Values/AttrValue.h"

namespace Zorvex {

class StringValue final : public AttrValue<CString> {
public:
    static constexpr std::uint32_t kSerializationId = 10002;

    using AttrValue<CString>::AttrValue;
    StringValue() = default;
    StringValue(const StringValue&) = default;

    std::uint32_t GetSerializationId() const override { return kSerializationId; }
    AttributeValueKind GetValueKind() const override { return AttributeValueKind::String; }
    // The text itself.
    CString ToString() const override;
    std::shared_ptr<IAttrValue> Clone() const override;
    void InitializeMatcher() override;
};

}  // namespace Zorvex
