// The way from an attribute's name to its place in a tag.
#pragma once

#include <cstdint>
#include <memory>

namespace Zorvex {

class IAttrValue;
class ISelectorTag;

// Beside the kinds of AttributeValueKind an accessor may take every kind; and a name may be unknown to a tag.
inline constexpr std::uint32_t kAttributeKindAny = 3;
inline constexpr std::uint32_t kAttributeKindUnknown = 4;

// An accessor belongs to one class of tags. Given a tag of another class it answers null and changes nothing.
class IAttributeAccessor {
public:
    virtual ~IAttributeAccessor() = default;
    virtual const std::shared_ptr<IAttrValue>& GetValue(const ISelectorTag& tag) const = 0;
    virtual const std::shared_ptr<IAttrValue>& GetValueOrDefault(const ISelectorTag& tag) const = 0;
    virtual bool IsSet(const ISelectorTag& tag) const = 0;
    // A null value clears; a value of another kind than GetKind() is dropped without a word.
    virtual void Assign(ISelectorTag& tag, std::shared_ptr<IAttrValue> value) const = 0;
    virtual void AssignChecked(ISelectorTag& tag, std::shared_ptr<IAttrValue> value) const = 0;
    virtual void Clear(ISelectorTag& tag) const = 0;
    virtual std::uint32_t GetKind() const = 0;
    virtual std::shared_ptr<IAttributeAccessor> Clone() const = 0;
    // An empty value of the kind that the attribute holds; a text where every kind is taken.
    virtual std::shared_ptr<IAttrValue> CreateValue() const = 0;
};

}  // namespace Zorvex
