// A wanted number.
#pragma once

#include "RuntimeCore/Selectors/Values/AttrValue.h"

namespace Zorvex {

class NumberValue final : public AttrValue<std::int64_t> {
public:
    static constexpr std::uint32_t kSerializationId = 10003;

    using AttrValue<std::int64_t>::AttrValue;
    NumberValue() = default;
    NumberValue(const NumberValue&) = default;

    std::uint32_t GetSerializationId() const override { return kSerializationId; }
    AttributeValueKind GetValueKind() const override { return AttributeValueKind::Number; }
    // Decimal.
    CString ToString() const override;
    std::shared_ptr<IAttrValue> Clone() const override;
    void InitializeMatcher() override;
};

}  // namespace Zorvex
