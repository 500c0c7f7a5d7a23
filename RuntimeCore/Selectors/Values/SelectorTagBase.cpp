#include "RuntimeCore/Selectors/Values/SelectorTagBase.h"

#include "Common/include/ArchiveExtension.h"
#include "RuntimeCore/Selectors/Values/ReadDynamic.h"

namespace Zorvex {

namespace {

bool IsFuzzy(const IAttrValue& value) {
    const std::uint32_t type = value.GetMatchingType();
    return type == MatchingTypeFuzzy || type == MatchingTypeFuzzyAlternative;
}

}  // namespace

const AttributeSlot& SelectorTagBase::NoValue() {
    static const AttributeSlot none;
    return none;
}

const IAttributeAccessor* SelectorTagBase::FindAccessor(std::wstring_view name) const {
    const auto found = Table().find(name);
    return found == Table().end() ? nullptr : found->second.get();
}

void SelectorTagBase::WriteToArchive(Archive& archive) const {
    AttributeMap attributes;
    for (const auto& [name, accessor] : Table())
        if (accessor->IsSet(*this)) attributes.emplace(name, accessor->GetValue(*this));
    writeMap(archive, attributes);
    // The order of the two last is on purpose.
    archive.write(m_limitsEveryLevel).write(m_tagFlagA).write(m_tagFlagB).write(m_tagFlagC);
}

void SelectorTagBase::ReadFromArchive(Archive& archive) {
    AttributeMap attributes;
    readMap(archive, attributes);
    for (auto& [name, value] : attributes) SetAttribute(name, std::move(value));
    archive.read(m_limitsEveryLevel).read(m_tagFlagA).read(m_tagFlagB).read(m_tagFlagC);
}

std::uint32_t SelectorTagBase::GetAttributeKind(std::wstring_view name) const {
    const IAttributeAccessor* accessor = FindAccessor(name);
    return accessor ? accessor->GetKind() : kAttributeKindUnknown;
}

bool SelectorTagBase::HasFuzzyAttributes() const {
    for (const auto& [name, value] : GetAttributes())
        if (value && IsFuzzy(*value)) return true;
    return false;
}

std::shared_ptr<IAttributeAccessor> SelectorTagBase::CreateAttribute(std::wstring_view name) const {
    const IAttributeAccessor* accessor = FindAccessor(name);
    return accessor ? accessor->Clone() : nullptr;
}

const AttributeSlot& SelectorTagBase::GetAttributeOrDefault(std::wstring_view name) const {
    const IAttributeAccessor* accessor = FindAccessor(name);
    return accessor ? accessor->GetValueOrDefault(*this) : NoValue();
}

AttributeSlot SelectorTagBase::GetAttribute(std::wstring_view name) const {
    const IAttributeAccessor* accessor = FindAccessor(name);
    return accessor ? accessor->GetValue(*this) : nullptr;
}

bool SelectorTagBase::IsAttributeSet(std::wstring_view name) const {
    const IAttributeAccessor* accessor = FindAccessor(name);
    return accessor && accessor->IsSet(*this);
}

void SelectorTagBase::SetAttribute(std::wstring_view name, AttributeSlot value) {
    if (const IAttributeAccessor* accessor = FindAccessor(name)) accessor->AssignChecked(*this, std::move(value));
}

void SelectorTagBase::SetAttributeUnchecked(std::wstring_view name, AttributeSlot value) {
    if (const IAttributeAccessor* accessor = FindAccessor(name)) accessor->Assign(*this, std::move(value));
}

void SelectorTagBase::ClearAttribute(std::wstring_view name) {
    if (const IAttributeAccessor* accessor = FindAccessor(name)) accessor->Clear(*this);
}

std::size_t SelectorTagBase::GetAttributeCount() const {
    std::size_t count = 0;
    for (const auto& [name, accessor] : Table()) count += accessor->IsSet(*this);
    return count;
}

std::size_t SelectorTagBase::GetDefinedAttributeCount() const {
    return Table().size() - Table().count(std::wstring_view(L"idx"));
}

AttributeMap SelectorTagBase::GetAttributes() const {
    AttributeMap attributes;
    for (const auto& [name, accessor] : Table())
        if (accessor->IsSet(*this)) attributes.emplace_hint(attributes.end(), name, accessor->GetValue(*this));
    return attributes;
}

AttributeMap SelectorTagBase::GetAttributesOrDefault() const {
    AttributeMap attributes;
    for (const auto& [name, accessor] : Table())
        if (accessor->IsSet(*this)) attributes.emplace_hint(attributes.end(), name, accessor->GetValueOrDefault(*this));
    return attributes;
}

AttributeAccessorMap SelectorTagBase::GetAttributeFactories() const {
    AttributeAccessorMap factories;
    for (const auto& [name, accessor] : Table()) factories.emplace_hint(factories.end(), name, accessor->Clone());
    return factories;
}

bool SelectorTagBase::FlagsAndAttributesEqual(const SelectorTagBase& other) const {
    if (m_tagFlagA != other.m_tagFlagA || m_limitsEveryLevel != other.m_limitsEveryLevel ||
        m_tagFlagC != other.m_tagFlagC || m_tagFlagB != other.m_tagFlagB)
        return false;
    for (const auto& [name, accessor] : Table()) {
        const AttributeSlot& mine = accessor->GetValue(*this);
        const AttributeSlot& theirs = accessor->GetValue(other);
        if (!mine && !theirs) continue;
        if (!mine || !theirs || !(*mine == *theirs)) return false;
    }
    return true;
}

void SelectorTagBase::CopyAttributesFrom(const SelectorTagBase& source) {
    for (const auto& [name, accessor] : Table())
        if (accessor->IsSet(source)) accessor->Assign(*this, accessor->GetValue(source)->Clone());
    m_limitsEveryLevel = source.m_limitsEveryLevel;
    m_tagFlagB = source.m_tagFlagB;
    m_tagFlagC = source.m_tagFlagC;
    m_tagMode = source.m_tagMode;
}

void AssignToSlot(AttributeSlot& slot, std::uint32_t kind, AttributeSlot value) {
    if (!value) slot.reset();
    else if (kind == kAttributeKindAny || kind == static_cast<std::uint32_t>(value->GetValueKind())) slot = std::move(value);
}

}  // namespace Zorvex
