// One level of a selector: a set of named attribute values.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string_view>

#include "Common/include/CString.h"
#include "Common/include/DynamicType.h"
#include "RuntimeCore/Selectors/Values/IAttributeAccessor.h"
#include "RuntimeCore/Selectors/Values/IAttrValue.h"

namespace Zorvex {

// The technology that a tag describes; the order is fixed by the wire's users.
enum class TagKind : std::uint32_t {
    Wnd = 0, Aa = 1, Java = 2, Html = 3, WebCtrl = 4, UiAuto = 5, SL = 6, Navigation = 7, SAP = 8, Rdp = 9, RdpApp = 10,
    Qt = 11, Wpf = 12
};

// Both maps are in code-unit order of the names.
using AttributeMap = std::map<CString, std::shared_ptr<IAttrValue>>;
using AttributeAccessorMap = std::map<CString, std::shared_ptr<IAttributeAccessor>>;

// No operation fails on an unknown name: getters answer null, setters do nothing. The order of the functions is that
// of the table in docs/wire-format.md; the values are shared with whoever set them.
class ISelectorTag : public DynamicType {
public:
    // AttributeValueKind as a number, kAttributeKindAny or kAttributeKindUnknown.
    virtual std::uint32_t GetAttributeKind(std::wstring_view name) const = 0;
    virtual TagKind GetTagKind() const = 0;
    // The four flags and the mode that travel with a tag; the search looks at LimitsEveryLevel alone: when set, and
    // the tag holds no fuzzy attribute, the limit on results binds at this level too.
    virtual bool GetTagFlagA() const = 0;
    virtual void SetTagFlagA(bool value) = 0;
    virtual bool GetLimitsEveryLevel() const = 0;
    virtual void SetLimitsEveryLevel(bool value) = 0;
    virtual bool GetTagFlagB() const = 0;
    virtual void SetTagFlagB(bool value) = 0;
    virtual bool GetTagFlagC() const = 0;
    virtual void SetTagFlagC(bool value) = 0;
    // True when a set attribute has matching type 3 or 4.
    virtual bool HasFuzzyAttributes() const = 0;
    virtual std::uint32_t GetTagMode() const = 0;
    virtual void SetTagMode(std::uint32_t mode) = 0;
    // A fresh accessor for the name, null for an unknown one; its CreateValue makes an empty value of the right class.
    virtual std::shared_ptr<IAttributeAccessor> CreateAttribute(std::wstring_view name) const = 0;
    // Answers a shared null for an unknown name.
    virtual const std::shared_ptr<IAttrValue>& GetAttributeOrDefault(std::wstring_view name) const = 0;
    virtual std::shared_ptr<IAttrValue> GetAttribute(std::wstring_view name) const = 0;
    virtual bool IsAttributeSet(std::wstring_view name) const = 0;
    // A null value clears; a value of another kind than the attribute's changes nothing, without a word.
    virtual void SetAttribute(std::wstring_view name, std::shared_ptr<IAttrValue> value) = 0;
    // In spite of its name the kind is checked here as well.
    virtual void SetAttributeUnchecked(std::wstring_view name, std::shared_ptr<IAttrValue> value) = 0;
    virtual void ClearAttribute(std::wstring_view name) = 0;
    // Set attributes.
    virtual std::size_t GetAttributeCount() const = 0;
    // Names in the class's table, without `idx`, which is a position among matches and no property of an element.
    virtual std::size_t GetDefinedAttributeCount() const = 0;
    // The set attributes.
    virtual AttributeMap GetAttributes() const = 0;
    virtual AttributeMap GetAttributesOrDefault() const = 0;
    // Same class, same flags, equal values; the mode isn't looked at.
    virtual bool Equals(const ISelectorTag& other) const = 0;
    // Copies of the values, and all flags but flag A, which stays at its default on purpose.
    virtual std::shared_ptr<ISelectorTag> CloneAttributes() const = 0;
    // A copy that shares the values.
    virtual std::shared_ptr<ISelectorTag> Clone() const = 0;
    // A fresh accessor for every name of the table.
    virtual AttributeAccessorMap GetAttributeFactories() const = 0;
};

}  // namespace Zorvex
