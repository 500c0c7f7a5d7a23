// What every tag does, given its table of attributes.
#pragma once

#include <initializer_list>
#include <span>
#include <vector>

#include "RuntimeCore/Selectors/Values/ISelectorTag.h"

namespace Zorvex {

using AttributeSlot = std::shared_ptr<IAttrValue>;

// From name to accessor, in code-unit order of the names.
using AttributeTable = std::map<CString, std::shared_ptr<IAttributeAccessor>, std::less<>>;

struct AttributeDefinition {
    const CString& name;
    AttributeValueKind kind;
};

class SelectorTagBase : public ISelectorTag {
public:
    // The set attributes of the table, then the four flags.
    void WriteToArchive(Archive& archive) const override;
    void ReadFromArchive(Archive& archive) override;

    std::uint32_t GetAttributeKind(std::wstring_view name) const override;
    bool GetTagFlagA() const override { return m_tagFlagA; }
    void SetTagFlagA(bool value) override { m_tagFlagA = value; }
    bool GetLimitsEveryLevel() const override { return m_limitsEveryLevel; }
    void SetLimitsEveryLevel(bool value) override { m_limitsEveryLevel = value; }
    bool GetTagFlagB() const override { return m_tagFlagB; }
    void SetTagFlagB(bool value) override { m_tagFlagB = value; }
    bool GetTagFlagC() const override { return m_tagFlagC; }
    void SetTagFlagC(bool value) override { m_tagFlagC = value; }
    bool HasFuzzyAttributes() const override;
    std::uint32_t GetTagMode() const override { return m_tagMode; }
    void SetTagMode(std::uint32_t mode) override { m_tagMode = mode; }
    std::shared_ptr<IAttributeAccessor> CreateAttribute(std::wstring_view name) const override;
    const AttributeSlot& GetAttributeOrDefault(std::wstring_view name) const override;
    AttributeSlot GetAttribute(std::wstring_view name) const override;
    bool IsAttributeSet(std::wstring_view name) const override;
    void SetAttribute(std::wstring_view name, AttributeSlot value) override;
    void SetAttributeUnchecked(std::wstring_view name, AttributeSlot value) override;
    void ClearAttribute(std::wstring_view name) override;
    std::size_t GetAttributeCount() const override;
    std::size_t GetDefinedAttributeCount() const override;
    AttributeMap GetAttributes() const override;
    AttributeMap GetAttributesOrDefault() const override;
    AttributeAccessorMap GetAttributeFactories() const override;

    // The shared answer for what isn't there.
    static const AttributeSlot& NoValue();

protected:
    virtual const AttributeTable& Table() const = 0;

    // Null for a name outside the table.
    const IAttributeAccessor* FindAccessor(std::wstring_view name) const;
    bool FlagsAndAttributesEqual(const SelectorTagBase& other) const;
    // Copies of the values of `source`, which is of the same class, and all flags but flag A.
    void CopyAttributesFrom(const SelectorTagBase& source);

private:
    // In the order in which other components lay them out; the wire has another.
    bool m_tagFlagA = false;
    bool m_limitsEveryLevel = true;
    bool m_tagFlagC = false;
    bool m_tagFlagB = false;
    std::uint32_t m_tagMode = 2;
};

// Assigns by the rule that accessors share: null clears, a value of another kind is dropped.
void AssignToSlot(AttributeSlot& slot, std::uint32_t kind, AttributeSlot value);

}  // namespace Zorvex
