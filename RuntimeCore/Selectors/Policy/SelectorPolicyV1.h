// The policy document of version 1.
#pragma once

#include "RuntimeCore/Selectors/Policy/SelectorPolicy.h"
#include "RuntimeCore/Selectors/Policy/SelectorTagPolicyV1.h"

namespace Zorvex::Generation {

class SelectorPolicyV1 final : public SelectorPolicy {
public:
    // On InvalidPolicy the tags that were read before the failure stay; the text stays as it was.
    SelectorPolicyParseResult ParseString(const CString& text) override;
    int GetVersion() const override { return SelectorTagPolicyV1::Version; }
    CString ToString() const override { return m_text; }
    const SelectorTagPolicy& GetTagPolicy(const CString& tagName) const override;
    std::shared_ptr<SelectorTagPolicy> GetOrAddTagPolicy(const CString& tagName) override;

private:
    bool IsOfThisVersion(const Value& version) const;

    SelectorTagPolicyMap m_tagPolicies;
    CString m_text;
};

}  // namespace Zorvex::Generation
