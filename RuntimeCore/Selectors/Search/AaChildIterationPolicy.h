// Lists the children of an accessible element for the search.
#pragma once

#include <cstdint>
#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "RuntimeCore/Selectors/Search/AaSearchResult.h"
#include "RuntimeCore/Selectors/Unified/ChildIterationPolicy.h"

namespace Zorvex::Search {

class AaChildIterationPolicy final : public ChildIterationPolicy<AaSearchResult> {
public:
    // Reads all children at once, and the window that they belong to. An element whose children can't be read has
    // none; that is logged.
    explicit AaChildIterationPolicy(const AaSearchResult& parent);

    // Passes over children that are no elements.
    bool HasNext() override;
    AaSearchResult Next() override;
    // An accessible element never keeps the walk waiting.
    bool IsBlocked() const override { return false; }
    AaSearchResult DefaultResult() const override { return AaSearchResult(); }

private:
    std::vector<AAObjectWrapper> m_children;
    std::uint32_t m_position = 0;
    HWND m_ownerWindow = nullptr;
};

}  // namespace Zorvex::Search
