// A tag that takes attributes of any name beside those of its table.
#pragma once

#include "Common/include/ArchiveExtension.h"
#include "RuntimeCore/Selectors/Values/ReadDynamic.h"
#include "RuntimeCore/Selectors/Values/StaticSelectorTagBase.h"

namespace Zorvex {

// Reaches one name outside the table of a Tag.
template <class Tag>
class DynamicAttributeAccessor final : public IAttributeAccessor {
public:
    explicit DynamicAttributeAccessor(std::wstring_view name) : m_name(name) {}

    const AttributeSlot& GetValue(const ISelectorTag& tag) const override {
        const auto* own = dynamic_cast<const Tag*>(&tag);
        return own ? own->GetDynamicAttributeOrDefault(m_name) : SelectorTagBase::NoValue();
    }
    const AttributeSlot& GetValueOrDefault(const ISelectorTag& tag) const override { return GetValue(tag); }
    bool IsSet(const ISelectorTag& tag) const override { return GetValue(tag) != nullptr; }
    void Assign(ISelectorTag& tag, AttributeSlot value) const override {
        if (auto* own = dynamic_cast<Tag*>(&tag)) own->SetDynamicAttribute(m_name, std::move(value));
    }
    void AssignChecked(ISelectorTag& tag, AttributeSlot value) const override { Assign(tag, std::move(value)); }
    void Clear(ISelectorTag& tag) const override { Assign(tag, nullptr); }
    std::uint32_t GetKind() const override { return kAttributeKindAny; }
    std::shared_ptr<IAttributeAccessor> Clone() const override { return std::make_shared<DynamicAttributeAccessor>(*this); }
    AttributeSlot CreateValue() const override { return std::make_shared<StringValue>(); }

private:
    CString m_name;
};

// Enumeration, counting, copying and comparing cover both sorts of attribute. A name of the table is never dynamic.
template <class Tag, std::size_t memberCount>
class DynamicSelectorTagBase : public StaticSelectorTagBase<Tag, memberCount> {
    using Base = StaticSelectorTagBase<Tag, memberCount>;

public:
    // The attributes outside the table, by themselves.
    const AttributeMap& GetDynamicAttributes() const { return m_dynamicAttributes; }
    std::size_t GetDynamicAttributeCount() const { return m_dynamicAttributes.size(); }
    std::shared_ptr<IAttributeAccessor> CreateDynamicAttribute(std::wstring_view name) const {
        return std::make_shared<DynamicAttributeAccessor<Tag>>(name);
    }
    const AttributeSlot& GetDynamicAttributeOrDefault(std::wstring_view name) const {
        const auto found = m_dynamicAttributes.find(CString(name));
        return found == m_dynamicAttributes.end() ? SelectorTagBase::NoValue() : found->second;
    }
    AttributeSlot GetDynamicAttribute(std::wstring_view name) const { return GetDynamicAttributeOrDefault(name); }
    bool IsDynamicAttributeSet(std::wstring_view name) const { return m_dynamicAttributes.count(CString(name)) != 0; }
    // A value of any kind; null clears. A name of the table changes nothing.
    void SetDynamicAttribute(std::wstring_view name, AttributeSlot value) {
        if (this->FindAccessor(name)) return;
        if (value) m_dynamicAttributes[CString(name)] = std::move(value);
        else ClearDynamicAttribute(name);
    }
    void ClearDynamicAttribute(std::wstring_view name) { m_dynamicAttributes.erase(CString(name)); }

    // The table's attributes and the flags as every tag has them, then the others.
    void WriteToArchive(Archive& archive) const override {
        Base::WriteToArchive(archive);
        writeMap(archive, m_dynamicAttributes);
    }
    void ReadFromArchive(Archive& archive) override {
        Base::ReadFromArchive(archive);
        AttributeMap attributes;
        readMap(archive, attributes);
        for (auto& [name, value] : attributes) SetAttribute(name, std::move(value));
    }

    std::uint32_t GetAttributeKind(std::wstring_view name) const override {
        return this->FindAccessor(name) ? Base::GetAttributeKind(name) : kAttributeKindAny;
    }
    std::shared_ptr<IAttributeAccessor> CreateAttribute(std::wstring_view name) const override {
        return this->FindAccessor(name) ? Base::CreateAttribute(name) : CreateDynamicAttribute(name);
    }
    const AttributeSlot& GetAttributeOrDefault(std::wstring_view name) const override {
        return this->FindAccessor(name) ? Base::GetAttributeOrDefault(name) : GetDynamicAttributeOrDefault(name);
    }
    AttributeSlot GetAttribute(std::wstring_view name) const override { return GetAttributeOrDefault(name); }
    bool IsAttributeSet(std::wstring_view name) const override { return GetAttributeOrDefault(name) != nullptr; }
    void SetAttribute(std::wstring_view name, AttributeSlot value) override {
        if (this->FindAccessor(name)) Base::SetAttribute(name, std::move(value));
        else SetDynamicAttribute(name, std::move(value));
    }
    void SetAttributeUnchecked(std::wstring_view name, AttributeSlot value) override { SetAttribute(name, std::move(value)); }
    void ClearAttribute(std::wstring_view name) override { SetAttribute(name, nullptr); }
    std::size_t GetAttributeCount() const override { return Base::GetAttributeCount() + m_dynamicAttributes.size(); }
    AttributeMap GetAttributes() const override {
        AttributeMap attributes = Base::GetAttributes();
        attributes.insert(m_dynamicAttributes.begin(), m_dynamicAttributes.end());
        return attributes;
    }
    AttributeMap GetAttributesOrDefault() const override { return GetAttributes(); }

    bool Equals(const ISelectorTag& other) const override {
        // A tag equals itself, even with a value that equals nothing.
        if (this == &other) return true;
        if (!Base::Equals(other)) return false;
        const AttributeMap& theirs = static_cast<const DynamicSelectorTagBase&>(other).m_dynamicAttributes;
        return std::equal(m_dynamicAttributes.begin(), m_dynamicAttributes.end(), theirs.begin(), theirs.end(),
                          [](const auto& a, const auto& b) { return a.first == b.first && *a.second == *b.second; });
    }
    std::shared_ptr<ISelectorTag> CloneAttributes() const override {
        auto copy = Base::CloneAttributes();
        for (const auto& [name, value] : m_dynamicAttributes) copy->SetAttribute(name, value->Clone());
        return copy;
    }

private:
    AttributeMap m_dynamicAttributes;
};

}  // namespace Zorvex
