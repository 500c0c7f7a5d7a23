// What every search result knows of itself, whatever tree it comes from.
#pragma once

#include <cstdint>

#include "RuntimeCore/Selectors/Values/ScoreStatistics.h"

namespace Zorvex {
class Archive;
}

namespace Zorvex::Search {

class SearchResultBase {
public:
    // Takes a new id from the process-wide sequence. The statistics hold `sample` alone.
    explicit SearchResultBase(double sample = 1.0);
    // Copies keep the id.
    SearchResultBase(const SearchResultBase&) = default;
    SearchResultBase(SearchResultBase&&) noexcept = default;
    SearchResultBase& operator=(const SearchResultBase&) = default;
    SearchResultBase& operator=(SearchResultBase&&) noexcept = default;

    virtual ~SearchResultBase() = default;
    // stats, id, parentId, score.
    virtual void WriteToArchive(Archive& archive) const;
    virtual void ReadFromArchive(Archive& archive);
    // Called once for each result when a search ends; `withRectangle` asks for the place on the screen as well.
    virtual void UpdateLocation(bool withRectangle);
    // False for a simple element, which another one answers for and which has no children.
    virtual bool IsSelf() const;
    virtual bool IsVisible() const;
    virtual bool IsValid() const;

    std::int64_t id;
    std::int64_t parentId = 0;  // the result of the previous tag that this one was found under; 0 at the first tag
    ScoreStatistics stats;      // of the whole chain down to this element
    double score;               // this tag's own mean, as it was before the chain was merged in
};

}  // namespace Zorvex::Search
