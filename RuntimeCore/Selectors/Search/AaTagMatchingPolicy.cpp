#include "RuntimeCore/Selectors/Search/AaTagMatchingPolicy.h"

#include <algorithm>

#include "RuntimeCore/Selectors/Search/StateNames.h"
#include "RuntimeCore/Selectors/Values/AttributeNames.h"

namespace Zorvex::Search {

AaTagMatchingPolicy::AaTagMatchingPolicy(std::shared_ptr<ISelectorTag> tag) : TagMatchingPolicy(std::move(tag)) {
    if (!m_tag) return;
    // The order of testing: cheap and telling attributes first.
    const AttributeName* const names[] = {
        &AttributeNames::Role,        &AttributeNames::Name, &AttributeNames::Automationid,
        &AttributeNames::Labeledby,   &AttributeNames::Virtualname, &AttributeNames::Text,
        &AttributeNames::HelpText,    &AttributeNames::Aastate, &AttributeNames::RowName,
    };
    for (const AttributeName* name : names) {
        std::shared_ptr<IAttrValue> wanted = m_tag->GetAttribute(*name);
        if (!wanted || !wanted->GetEnabled()) continue;
        if (name == &AttributeNames::Aastate && wanted->GetMatchingType() == MatchingTypeNormal)
            m_requiredStates = ParseStates(wanted->ToString());
        else
            m_tests.push_back({std::move(wanted), *name});
    }
}

bool AaTagMatchingPolicy::Matches(AttributeAccessPolicy& attributes, ScoreStatistics& stats) {
    for (const AttributeTest& test : m_tests)
        if (!test.wanted->Matches(attributes.GetValue(test.name), &stats)) return false;
    if (m_requiredStates.empty()) return true;
    const bool holds = HasRequiredStates(attributes);
    stats.Add(holds ? 1.0 : 0.0);
    return holds;
}

std::uint32_t AaTagMatchingPolicy::GetAttributeCount() const {
    return static_cast<std::uint32_t>(m_tests.size()) + (m_requiredStates.empty() ? 0 : 1);
}

// Names alone decide, without wildcards; what else the element is doesn't matter.
bool AaTagMatchingPolicy::HasRequiredStates(AttributeAccessPolicy& attributes) const {
    const std::set<CString> actual = ParseStates(attributes.GetValue(AttributeNames::Aastate));
    return std::includes(actual.begin(), actual.end(), m_requiredStates.begin(), m_requiredStates.end());
}

}  // namespace Zorvex::Search
