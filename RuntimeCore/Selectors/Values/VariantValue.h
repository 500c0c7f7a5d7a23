// A wanted variant, compared as a whole.
#pragma once

#include "RuntimeCore/Selectors/Values/AttrValue.h"

namespace Zorvex {

class VariantValue final : public AttrValue<CComVariant> {
public:
    static constexpr std::uint32_t kSerializationId = 10004;

    using AttrValue<CComVariant>::AttrValue;
    VariantValue() = default;
    VariantValue(const VariantValue&) = default;

    std::uint32_t GetSerializationId() const override { return kSerializationId; }
    AttributeValueKind GetValueKind() const override { return AttributeValueKind::Variant; }
    // The fixed text "unexpected", on purpose: nobody prints variants.
    CString ToString() const override;
    std::shared_ptr<IAttrValue> Clone() const override;
    void InitializeMatcher() override;
};

}  // namespace Zorvex
