// A found accessible element as it goes back to the client: an identifier that outlives the search.
#pragma once

#include "Platform/Windows.h"
#include "RuntimeCore/Requests/AAObjectIdentifier.h"
#include "RuntimeCore/Selectors/Unified/SearchResultBase.h"
#include "RuntimeCore/Selectors/Unified/SelectorResult.h"

namespace Zorvex::Search {

class AaCrossProcessSearchResult final : public SearchResultBase {
public:
    AaCrossProcessSearchResult() = default;
    // Takes over id, parentId, stats and score of `found`, so that no id is used up.
    AaCrossProcessSearchResult(const SearchResultBase& found, const AAObjectIdentifier& elementIdentifier, const RECT& screenRectangle)
        : SearchResultBase(found), identifier(elementIdentifier), rectangle(screenRectangle) {}

    // The base fields, the identifier, then left, top, right, bottom.
    void WriteToArchive(Archive& archive) const override;
    void ReadFromArchive(Archive& archive) override;
    bool IsSelf() const override;
    // The window still exists and the identifier names an element, not the window itself.
    bool IsValid() const override;

    AAObjectIdentifier identifier;
    RECT rectangle{};  // screen coordinates; all zero when it wasn't read
};

// One SelectorEntry's answer on the wire.
using CrossProcessSelectorResult = SelectorResult<AaCrossProcessSearchResult>;
using CrossProcessResultSet = ResultSet<AaCrossProcessSearchResult>;

}  // namespace Zorvex::Search
