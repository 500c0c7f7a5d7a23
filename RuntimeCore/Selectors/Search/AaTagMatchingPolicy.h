// Decides whether an accessible element fits a tag.
#pragma once

#include <set>
#include <utility>
#include <vector>

#include "RuntimeCore/Selectors/Unified/TagMatchingPolicy.h"

namespace Zorvex::Search {

class AaTagMatchingPolicy final : public TagMatchingPolicy {
public:
    // Looks at the nine attributes that an accessible element can have, whatever class the tag is of. Disabled ones
    // are left out; `idx` is no test but a position. A null tag has no tests.
    explicit AaTagMatchingPolicy(std::shared_ptr<ISelectorTag> tag);

    bool Matches(AttributeAccessPolicy& attributes, ScoreStatistics& stats) override;
    std::uint32_t GetAttributeCount() const override;

private:
    struct AttributeTest {
        std::shared_ptr<IAttrValue> wanted;
        std::wstring_view name;  // one of the constants
    };

    bool HasRequiredStates(AttributeAccessPolicy& attributes) const;

    std::vector<AttributeTest> m_tests;
    std::set<CString> m_requiredStates;  // lower case; all must be among the element's own
};

}  // namespace Zorvex::Search
