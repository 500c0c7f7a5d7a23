// Tags from what is known of a node, by default or by a policy.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Controller/CommandLine/ElementDescription.h"
#include "RuntimeCore/Requests/Records.h"

namespace Zorvex::Controller {

// What became of one node.
struct ComposedTag {
    std::shared_ptr<ISelectorTag> tag;  // null: the node is out
    std::string reason;
    bool mayHaveIndex = true;           // no policy excludes it
};

class SelectorComposer {
public:
    explicit SelectorComposer(const DescriptionWishes& wishes) : m_wishes(wishes) {}

    // `isTarget`: the element itself, which is always in. `allAttributes` of the record are read where there is a policy.
    ComposedTag OfElement(const AncestryNode& record, const ElementView& view, bool isTarget);
    // A window's tag: its program, its class, and its title on wish. `isTopLevel`: it can't be left out.
    ComposedTag OfWindow(const Loader::WindowInfo& window, bool withTitle, bool isTopLevel);

    // What a policy asked for that no tag can carry.
    const std::vector<std::string>& Notes() const { return m_notes; }

private:
    ComposedTag Compose(std::shared_ptr<ISelectorTag> tag, const wchar_t* tagName, std::uint32_t level, bool included,
                        const std::map<CString, CString>& carried, std::map<CString, CString> known, std::string reason);

    const DescriptionWishes& m_wishes;
    std::vector<std::string> m_notes;
};

}  // namespace Zorvex::Controller
