// A node of an ancestry that the server has told of, for a policy to work on: nothing is asked of the target any more.
#pragma once

#include <map>
#include <string>

#include "RuntimeCore/Selectors/Policy/SelectorPolicyContext.h"

namespace Zorvex::Controller {

class PolicyNode final : public Generation::SelectorPolicyContext {
public:
    // `included`: what the server says of the node while no rule has spoken.
    PolicyNode(std::uint32_t hierarchyLevel, bool included, std::map<CString, CString> attributes)
        : SelectorPolicyContext(hierarchyLevel), m_included(included), m_attributes(std::move(attributes)) {}

    bool IsIncludedInDefaultHierarchy(const Generation::ContextData&) override { return m_included; }

protected:
    CString GetCurrentAttrValue(const CString& name, const Generation::ContextData&) override {
        const auto found = m_attributes.find(name);
        return found == m_attributes.end() ? CString() : found->second;
    }

private:
    const bool m_included;
    const std::map<CString, CString> m_attributes;
};

}  // namespace Zorvex::Controller
