#include "InProc/Vantrel/FindSelectors.h"

#include <utility>

#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/Selectors/Search/AaSearch.h"
#include "RuntimeCore/Selectors/Unified/SearchResultSequence.h"

namespace Zorvex {

namespace {

using Search::AaCrossProcessSearchResult;
using Search::AaSearchResult;

// Found elements as identifiers, which outlive the search. An element whose window has gone is dropped without a word.
Search::ResultSet<AaCrossProcessSearchResult> ConvertResultSet(const AAContainerCache::ClientKey& clientKey, std::uint32_t limit,
                                                               std::vector<AaSearchResult>&& results) {
    Search::ResultSet<AaCrossProcessSearchResult> converted;
    converted.limit = limit;
    converted.results.reserve(results.size());
    for (AaSearchResult& result : results) {
        const AAObjectIdentifier identifier = AAContainerCache::Instance().RegisterObject(
            clientKey, AAElement{result.ownerWindow, std::move(result.accessible), std::move(result.child)});
        if (::IsWindow(identifier.hWnd) && identifier.containerId != 0)
            converted.results.emplace_back(result, identifier, result.rectangle);
    }
    return converted;
}

Search::CrossProcessSelectorResult Convert(const AAContainerCache::ClientKey& clientKey, Search::AaSelectorResult&& result) {
    Search::CrossProcessSelectorResult converted;
    auto last = ConvertResultSet(clientKey, result.limit, std::move(result.results));
    converted.limit = last.limit;
    converted.results = std::move(last.results);
    converted.error = std::move(result.error);
    converted.reserved = result.reserved;
    for (auto& set : result.intermediate)
        converted.intermediate.push_back(ConvertResultSet(clientKey, set.limit, std::move(set.results)));
    return converted;
}

// The object to search from; the window's own where the identifier names no element. Null on failure.
CComPtr<IAccessible> SearchRoot(const AAElement& element) {
    if (element.spAcc) return element.spAcc;
    CComPtr<IAccessible> root;
    if (element.child.vt != VT_I4 || element.child.lVal != CHILDID_SELF) return nullptr;
    // An identifier that the cache doesn't know has no window: the search fails rather than starting elsewhere.
    if (!element.hWnd || FAILED(ObjectFromWindow(element.hWnd, OBJID_WINDOW, root)) || !root) {
        LogError(LocatedFormat<char>("FindSelectorsImpl_: AccessibleObjectFromWindow failed", __builtin_FILE(), "FindSelectorsImpl"));
        return nullptr;
    }
    return root;
}

}  // namespace

FindSelectorsResponse FindSelectorsImpl(const FindSelectorsRequest& request) {
    LogVerbose("FindSelectorsImpl: start");
    if (!::IsWindow(request.root.hWnd)) {
        LogError("Invalid input param");
        return {};
    }
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.root);
    CComPtr<IAccessible> accessible = SearchRoot(element);
    if (!accessible) return {};

    // Ids go on from the client's last one, so that they stay unique over all processes of a search.
    Search::SetSearchResultSequence(static_cast<std::int64_t>(static_cast<std::uint64_t>(request.sequence) + 1));
    const AaSearchResult root(std::move(accessible), CComVariant(CHILDID_SELF), element.hWnd);
    std::vector<Search::AaSelectorResult> results;
    Search::Search(results, root, request.selectors, request.timeoutMilliseconds);

    FindSelectorsResponse response;
    response.success = true;
    const AAContainerCache::ClientKey clientKey{request.root.clientPid, request.root.originalWnd};
    response.results.reserve(results.size());
    for (auto& result : results) response.results.push_back(Convert(clientKey, std::move(result)));
    response.sequence = Search::TakeSearchResultId();
    return response;
}

}  // namespace Zorvex
