#include "RuntimeCore/Interaction/ItemsSearch.h"

#include <memory>
#include <utility>

#include "RuntimeCore/Selectors/Search/AaSearch.h"
#include "RuntimeCore/Selectors/Unified/ElementNotFoundError.h"
#include "RuntimeCore/Selectors/Values/AttributeNames.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex {

namespace {

Search::SelectorEntry QueryFor(const ItemPattern& pattern, ItemMatches matches) {
    auto tag = std::make_shared<AaTag>();
    const std::pair<std::wstring_view, const CString&> attributes[] = {
        {AttributeNames::Role, pattern.role}, {AttributeNames::Name, pattern.name}, {AttributeNames::Text, pattern.text}};
    for (const auto& [name, wanted] : attributes)
        if (!wanted.empty()) tag->SetAttribute(name, std::make_shared<StringValue>(wanted));

    Search::SelectorEntry query;
    query.pendingAttributeCount = static_cast<std::uint32_t>(tag->GetAttributeCount());
    query.tags = {std::move(tag)};
    query.options.scope = Search::SearchScope::Descendants;
    query.options.resultPolicy = matches == ItemMatches::All ? Search::ResultPolicy::BestMatch : Search::ResultPolicy::FirstMatch;
    // All of these patterns match or don't, so nothing that comes later is better than what is there: the walk may end.
    query.options.maxResults = matches == ItemMatches::All ? MostItems : 1;
    return query;
}

}  // namespace

FoundItems FindItems(const ItemsContainer& container, const ItemPattern& pattern, ItemMatches matches) {
    const Search::AaSearchResult root(CComPtr<IAccessible>(container.Accessible()), CComVariant(CHILDID_SELF), container.Window());
    std::vector<Search::AaSelectorResult> results;
    Search::Search(results, root, {QueryFor(pattern, matches)}, ItemSearchTimeout);

    FoundItems found;
    if (results.empty()) return found;
    const auto& error = results.front().error;
    found.failed = error && error->GetErrorId() != Search::ElementNotFoundError::kErrorId;
    if (error) return found;
    found.items = std::move(results.front().results);
    return found;
}

}  // namespace Zorvex
