// Decides whether an element fits a tag.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "RuntimeCore/Selectors/Unified/AttributeAccessPolicy.h"
#include "RuntimeCore/Selectors/Values/ISelectorTag.h"
#include "RuntimeCore/Selectors/Values/ScoreStatistics.h"

namespace Zorvex::Search {

class TagMatchingPolicy {
public:
    explicit TagMatchingPolicy(std::shared_ptr<ISelectorTag> tag) : m_tag(std::move(tag)) {}
    virtual ~TagMatchingPolicy() = default;
    // `stats` get a score for each attribute tested; after the first that fails nothing more is read or tested.
    virtual bool Matches(AttributeAccessPolicy& attributes, ScoreStatistics& stats) = 0;
    // 0: there is nothing to test, and every element fits.
    virtual std::uint32_t GetAttributeCount() const = 0;

protected:
    std::shared_ptr<ISelectorTag> m_tag;
};

}  // namespace Zorvex::Search
