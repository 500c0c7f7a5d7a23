// Selectors as a person types them:
//
//   ctrl[role=window] ctrl[name="Save*" role="push button" idx=2]
//
// docs/selectors.md has the whole language. Text that this module writes reads back as the same selector.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "RuntimeCore/Selectors/Unified/SearchParameters.h"

namespace Zorvex {
class ISelectorTag;
}

namespace Zorvex::Controller {

struct Selector {
    Search::SearchScope scope = Search::SearchScope::Descendants;
    std::vector<std::shared_ptr<ISelectorTag>> tags;  // top first, none null
};

// A mistake in a selector's text.
struct SelectorTextError {
    std::size_t column = 0;  // from 1, in UTF-16 code units
    std::wstring message;    // what is wrong and what was expected, one sentence

    // The text, a caret below the column, and the message, on three lines.
    std::wstring Show(std::wstring_view text) const;
};

// The level of a fuzzy value whose text doesn't say one.
inline constexpr double kDefaultFuzzyLevel = 0.7;

// Texts longer than this are refused.
inline constexpr std::size_t kMaximumSelectorLength = 1'000'000;

// False with `error` filled, and `selector` untouched, for a text that is no selector.
bool ParseSelector(std::wstring_view text, Selector& selector, SelectorTextError& error);

// Null tags are left out. Flags of tags have no text form; nor has an empty variant.
std::wstring WriteSelector(const Selector& selector);
std::wstring WriteTag(const ISelectorTag& tag);

}  // namespace Zorvex::Controller
