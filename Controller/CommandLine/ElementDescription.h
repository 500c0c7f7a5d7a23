// From an element to the selector by which it is found again.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Controller/CommandLine/Elements.h"
#include "Controller/CommandLine/SelectorText.h"
#include "Controller/Loader/WindowInfo.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicy.h"

namespace Zorvex::Controller {

// Matches are counted up to this number.
inline constexpr std::uint32_t kCountedMatches = 1'000;

struct DescriptionWishes {
    std::wstring policyText;  // empty: none
    std::shared_ptr<Generation::SelectorPolicy> policy;  // of the text
    bool aaOnly = false;      // stay in the accessible tree instead of going over to windows
    std::optional<double> fuzzyLevel;  // names and titles are compared by resemblance
    bool explain = false;     // count what each attribute contributes; costs a search each
};

// An attribute of a tag, and what it is good for.
struct DescribedAttribute {
    std::wstring text;               // as the selector writes it
    std::uint32_t matchesWithout = 0;  // elements that the selector matches without it; to kCountedMatches
};

// A node on the way from the element to its top-level window.
struct DescribedNode {
    ElementView view;            // of an element
    Loader::WindowInfo window;   // of a window; its handle is null in an element's node
    bool included = false;
    std::string reason;          // why it is in or out
    std::shared_ptr<ISelectorTag> tag;           // null for a node that is out
    std::vector<DescribedAttribute> attributes;  // with `explain`, of an element's tag
};

struct ElementDescription {
    std::vector<DescribedNode> nodes;  // the element first, the top-level window last
    Selector selector;                 // the best there is, also where it doesn't lead back
    std::uint32_t matches = 0;         // elements that the selector matches without an index; to kCountedMatches
    std::int64_t index = 0;            // the index that tells the element from its likes; 0: none is needed
    bool windowIndexed = false;        // a window needs an index
    std::string problem;               // why the selector doesn't lead back to the element; empty: it does
    std::vector<std::string> notes;    // what the policy asked for that can't be
};

// The session is open. Throws CommandFailure where the server can't tell the ancestry.
ElementDescription DescribeElement(Session& session, const AAObjectIdentifier& target, const DescriptionWishes& wishes);

}  // namespace Zorvex::Controller
