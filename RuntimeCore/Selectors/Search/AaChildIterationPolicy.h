// Lists the children of an accessible element for the search.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "RuntimeCore/Selectors/Search/AaSearchResult.h"
#include "RuntimeCore/Selectors/Unified/ChildIterationPolicy.h"

namespace Zorvex::Search {

// What the walk keeps of an element whose children it will list: the queue of a wide tree is long, and holds nothing
// else.
struct AaContainer {
    AaContainer(const AaSearchResult& element) : id(element.id), accessible(element.accessible), ownerWindow(element.ownerWindow) {}
    AaContainer(AaSearchResult&& element) noexcept
        : id(element.id), accessible(std::move(element.accessible)), ownerWindow(element.ownerWindow) {}

    std::int64_t id;
    CComPtr<IAccessible> accessible;
    OwnerWindow ownerWindow;
};

class AaChildIterationPolicy final : public ChildIterationPolicy<AaSearchResult> {
public:
    // Reads all children at once, and the window that they belong to. An element whose children can't be read has
    // none; that is logged.
    explicit AaChildIterationPolicy(const AaContainer& parent);

    // Passes over children that are no elements.
    bool HasNext() override;
    AaSearchResult Next() override;
    // An accessible element never keeps the walk waiting.
    bool IsBlocked() const override { return false; }
    AaSearchResult DefaultResult() const override { return AaSearchResult(); }

private:
    std::vector<AAObjectWrapper> m_children;
    std::uint32_t m_position = 0;
    OwnerWindow m_ownerWindow;
};

}  // namespace Zorvex::Search
