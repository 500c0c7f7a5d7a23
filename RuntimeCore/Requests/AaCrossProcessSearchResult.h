// An element that a search found, in the form that goes back to the client: an identifier that outlives the search.
#pragma once

#include "Platform/Windows.h"
#include "RuntimeCore/Requests/AAObjectIdentifier.h"
#include "RuntimeCore/Selectors/Unified/ResultSet.h"
#include "RuntimeCore/Selectors/Unified/SearchResultBase.h"
#include "RuntimeCore/Selectors/Unified/SelectorResult.h"

namespace Zorvex::Search {

class AaCrossProcessSearchResult final : public SearchResultBase {
public:
    static constexpr std::size_t kMinimumWireSize = 37 + 9 + 9 + 8 + 30 + 20;

    using SearchResultBase::SearchResultBase;
    // Takes over id, parentId, stats and score of `found`, so that no id is used up.
    AaCrossProcessSearchResult(const SearchResultBase& found, const AAObjectIdentifier& element, const RECT& screenRectangle)
        : SearchResultBase(found), identifier(element), rectangle(screenRectangle) {}

    // The base fields, then the identifier, then left, top, right, bottom.
    void WriteToArchive(Archive& archive) const override;
    void ReadFromArchive(Archive& archive) override;
    bool IsSelf() const override { return identifier.childId == CHILDID_SELF; }
    // The window still exists and the identifier names an element, not the window itself.
    bool IsValid() const override;

    AAObjectIdentifier identifier;
    RECT rectangle{};  // screen coordinates; zero when it wasn't asked for or couldn't be read
};

using CrossProcessResultSet = ResultSet<AaCrossProcessSearchResult>;
using CrossProcessSelectorResult = SelectorResult<AaCrossProcessSearchResult>;

}  // namespace Zorvex::Search
