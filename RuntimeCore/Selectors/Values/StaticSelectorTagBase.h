// A tag whose attributes are those of a fixed table.
#pragma once

#include <array>

#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTagBase.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"

namespace Zorvex {

// Reaches one member of a Tag by its position.
template <class Tag, class Value>
class StaticAttributeAccessor final : public IAttributeAccessor {
public:
    StaticAttributeAccessor(AttributeValueKind kind, std::size_t position)
        : m_kind(static_cast<std::uint32_t>(kind)), m_position(position) {}

    const AttributeSlot& GetValue(const ISelectorTag& tag) const override {
        const auto* own = dynamic_cast<const Tag*>(&tag);
        return own ? own->Member(m_position) : SelectorTagBase::NoValue();
    }
    const AttributeSlot& GetValueOrDefault(const ISelectorTag& tag) const override { return GetValue(tag); }
    bool IsSet(const ISelectorTag& tag) const override { return GetValue(tag) != nullptr; }
    void Assign(ISelectorTag& tag, AttributeSlot value) const override {
        if (auto* own = dynamic_cast<Tag*>(&tag)) AssignToSlot(own->Member(m_position), m_kind, std::move(value));
    }
    void AssignChecked(ISelectorTag& tag, AttributeSlot value) const override { Assign(tag, std::move(value)); }
    void Clear(ISelectorTag& tag) const override { Assign(tag, nullptr); }
    std::uint32_t GetKind() const override { return m_kind; }
    std::shared_ptr<IAttributeAccessor> Clone() const override { return std::make_shared<StaticAttributeAccessor>(*this); }
    AttributeSlot CreateValue() const override { return std::make_shared<Value>(); }

private:
    std::uint32_t m_kind;
    std::size_t m_position;
};

// Tag has kSerializationId, kTagKind and StaticTable(), which BuildTable makes. The values are shared by plain copies
// of a tag.
template <class Tag, std::size_t memberCount>
class StaticSelectorTagBase : public SelectorTagBase {
public:
    std::uint32_t GetSerializationId() const override { return Tag::kSerializationId; }
    TagKind GetTagKind() const override { return Tag::kTagKind; }

    bool Equals(const ISelectorTag& other) const override {
        const auto* same = dynamic_cast<const StaticSelectorTagBase*>(&other);
        return same && (same == this || FlagsAndAttributesEqual(*same));
    }
    std::shared_ptr<ISelectorTag> CloneAttributes() const override {
        auto copy = std::make_shared<Tag>();
        static_cast<StaticSelectorTagBase&>(*copy).CopyAttributesFrom(*this);
        return copy;
    }
    std::shared_ptr<ISelectorTag> Clone() const override { return std::make_shared<Tag>(static_cast<const Tag&>(*this)); }

    // For the accessors; `position` is the place in the table's definition.
    AttributeSlot& Member(std::size_t position) { return m_members.at(position); }
    const AttributeSlot& Member(std::size_t position) const { return m_members.at(position); }

protected:
    const AttributeTable& Table() const override { return Tag::StaticTable(); }

    // The first of two definitions with the same name wins.
    static AttributeTable BuildTable(std::initializer_list<AttributeDefinition> definitions) {
        AttributeTable table;
        std::size_t position = 0;
        for (const AttributeDefinition& definition : definitions) {
            if (definition.kind == AttributeValueKind::String)
                table.emplace(definition.name, std::make_shared<StaticAttributeAccessor<Tag, StringValue>>(definition.kind, position));
            else
                table.emplace(definition.name, std::make_shared<StaticAttributeAccessor<Tag, NumberValue>>(definition.kind, position));
            ++position;
        }
        return table;
    }

private:
    std::array<AttributeSlot, memberCount> m_members;
};

}  // namespace Zorvex
