#include "RuntimeCore/Selectors/Search/StateNames.h"

#include <algorithm>
#include <utility>

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex::Search {

std::set<CString> ParseStates(std::wstring_view text) {
    std::set<CString> states;
    while (!text.empty()) {
        const std::size_t comma = std::min(text.find(L','), text.size());
        std::wstring_view part = text.substr(0, comma);
        text.remove_prefix(std::min(comma + 1, text.size()));
        while (!part.empty() && IsSpace(part.front())) part.remove_prefix(1);
        while (!part.empty() && IsSpace(part.back())) part.remove_suffix(1);
        if (part.empty()) continue;
        CString state(part);
        std::transform(state.begin(), state.end(), state.begin(), ToLower);
        states.insert(std::move(state));
    }
    return states;
}

}  // namespace Zorvex::Search
