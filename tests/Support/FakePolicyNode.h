// A node that a policy's rules can decide about, with attributes from a table and its questions counted.
#pragma once

#include <map>
#include <string>

#include "RuntimeCore/Selectors/Policy/SelectorPolicyContext.h"

namespace Zorvex::Testing {

class FakePolicyNode final : public Generation::SelectorPolicyContext {
public:
    explicit FakePolicyNode(std::uint32_t hierarchyLevel = Generation::LevelInner) : SelectorPolicyContext(hierarchyLevel) {}

    bool IsIncludedInDefaultHierarchy(const Generation::ContextData&) override {
        ++m_defaultQuestions;
        return m_isIncludedByDefault;
    }

    // The value that the rules have given an attribute; "(none)" where there is none.
    std::wstring Given(const CString& name) const {
        const auto found = GetAttributeValues().find(name);
        return found == GetAttributeValues().end() ? L"(none)" : found->second->ToString();
    }

    std::map<CString, CString> m_elementAttributes;
    std::map<CString, int> m_reads;
    bool m_isIncludedByDefault = true;
    int m_defaultQuestions = 0;

protected:
    CString GetCurrentAttrValue(const CString& name, const Generation::ContextData&) override {
        ++m_reads[name];
        const auto found = m_elementAttributes.find(name);
        return found == m_elementAttributes.end() ? CString() : found->second;
    }
};

}  // namespace Zorvex::Testing
