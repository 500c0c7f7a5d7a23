// What a policy says of one kind of tag.
#pragma once

#include "Common/include/CString.h"
#include "Common/include/JsonSerializer/Value.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyContext.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyRule.h"

namespace Zorvex::Generation {

// The root of the tag policies of all versions.
class SelectorTagPolicy {
public:
    virtual ~SelectorTagPolicy() = default;
    // Adds the rules of a list. False, with nothing added and a log line, if one of them is bad.
    virtual bool ParseJson(const Value& value) = 0;
    // For people and logs: a document that holds this tag policy alone. Empty on failure, which is logged.
    virtual CString ToStringWithVersion() const = 0;
    // True if there is no rule.
    virtual bool IsEmpty() const = 0;
    virtual void AddRule(SelectorPolicyRule&& rule) = 0;
    // Lets the rules decide about one node: whether it stays in the hierarchy, and which attributes its tag carries.
    virtual void Apply(const ContextData& contextData, SelectorPolicyContext& node) const = 0;
};

}  // namespace Zorvex::Generation
