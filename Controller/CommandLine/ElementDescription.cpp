#include "Controller/CommandLine/ElementDescription.h"

#include <algorithm>
#include <cstdio>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Output.h"
#include "Controller/CommandLine/SelectorComposer.h"
#include "Controller/CommandLine/WindowTags.h"
#include "Controller/Loader/WindowTree.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex::Controller {

namespace {

std::string AncestryProblem(HRESULT result) {
    switch (static_cast<std::uint32_t>(result)) {
        case 0x80040215: return "the element, or one above it, has gone";
        case 0x80040226: return "the target took too long";
        case 0x80070057: return "the server doesn't know the element";
        default: break;
    }
    char code[16];
    std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(result));
    return std::string("the server's result is ") + code;
}

GetAncestryInfoResponse ReadAncestry(Session& session, const AAObjectIdentifier& target, const DescriptionWishes& wishes) {
    GetAncestryInfoRequest request;
    request.target = target;
    request.options.flags = AncestryKeepAllNodes | AncestryComputeIndex | AncestryCheckUniqueIndex;
    if (wishes.policy) request.options.flags |= AncestryAllAttributes;
    if (wishes.aaOnly) request.options.flags |= AncestryAaOnlyMode;
    if (target.isDomAria) request.options.flags |= AncestryStrictOwner;
    request.options.policy = wishes.policyText;
    request.options.timeoutMilliseconds = session.SearchMilliseconds();
    auto response = session.Call(request);
    if (FAILED(response.result))
        throw CommandFailure(ExitCode::NotFound, "what lies above the element can't be told: " + AncestryProblem(response.result));
    return response;
}

std::shared_ptr<ISelectorTag> WithIndex(const ISelectorTag& tag, std::int64_t index) {
    auto indexed = tag.CloneAttributes();
    indexed->SetAttribute(L"idx", std::make_shared<NumberValue>(index, MatchingTypeNormal));
    return indexed;
}

// One search for an element, tried with ever more help until it leads back to it.
class BackSearch {
public:
    BackSearch(Session& session, HWND root, const AAObjectIdentifier& target)
        : m_session(session), m_root{root, 0, CHILDID_SELF, 0, session.ClientNumber(), root}, m_target(target) {}

    // In the order of the tree.
    std::vector<AAObjectIdentifier> Matches(const TagList& tags, std::uint32_t maximum = kCountedMatches) {
        Search::SelectorEntry entry;
        entry.tags = tags;
        entry.options.maxResults = maximum;
        entry.options.resultPolicy = PolicyFor(tags);
        entry.options.acceptHiddenAtFirstLevel = true;
        entry.options.refreshLocation = false;
        return Controller::Search(m_session, m_root, std::move(entry));
    }
    bool IsTarget(const AAObjectIdentifier& found) {
        return m_session.Call(AreEqualRequest{found, m_target}).answer;
    }
    // The target's place among the matches, from 1; 0 if it isn't there.
    std::int64_t PlaceAmong(const std::vector<AAObjectIdentifier>& matches) {
        for (std::size_t i = 0; i < matches.size(); ++i)
            if (IsTarget(matches[i])) return static_cast<std::int64_t>(i) + 1;
        return 0;
    }
    // As a selector without further wishes is searched for.
    bool LeadsBack(const TagList& tags) {
        const auto matches = Matches(tags, 1);
        return matches.size() == 1 && IsTarget(matches.front());
    }

private:
    Session& m_session;
    const AAObjectIdentifier m_root, m_target;
};

struct ElementTags {
    TagList tags;
    std::vector<std::int64_t> serverIndex;  // 0: the server says that the node is the only one of its kind there
    bool mayHaveIndex = true;               // of the last tag
};

// Settles the index, and says what is wrong if nothing leads back.
TagList SettleIndex(BackSearch& search, const ElementTags& elements, ElementDescription& description) {
    const auto matches = search.Matches(elements.tags);
    description.matches = static_cast<std::uint32_t>(matches.size());
    const std::int64_t place = search.PlaceAmong(matches);
    if (place == 1 && matches.size() == 1 && search.LeadsBack(elements.tags)) return elements.tags;
    // Of several that resemble it, it may be the one that does so best.
    if (PolicyFor(elements.tags) == Search::ResultPolicy::BestMatch && search.LeadsBack(elements.tags)) return elements.tags;
    if (!elements.mayHaveIndex) {
        description.problem = matches.empty() ? "nothing is found by it" : place == 0 ? "it finds other elements, but not this one"
                              : std::to_string(matches.size()) + " elements match, and the policy excludes the index";
        return elements.tags;
    }
    if (place > 0) {
        TagList indexed = elements.tags;
        indexed.back() = WithIndex(*elements.tags.back(), place);
        description.index = place;
        if (search.LeadsBack(indexed)) return indexed;
    }
    // The places that the server counted, where each tag is looked for below the one above it.
    TagList counted = elements.tags;
    for (std::size_t i = 0; i < counted.size(); ++i)
        if (elements.serverIndex[i] > 0) counted[i] = WithIndex(*counted[i], elements.serverIndex[i]);
    description.index = elements.serverIndex.back();
    if (search.LeadsBack(counted)) return counted;
    // An ancestor that the search doesn't see, or sees elsewhere, is no help.
    const TagList alone{elements.tags.back()};
    if (alone.size() < elements.tags.size()) {
        const auto likes = search.Matches(alone);
        if (const std::int64_t likePlace = search.PlaceAmong(likes)) {
            const TagList indexed{likes.size() > 1 ? WithIndex(*alone.front(), likePlace) : alone.front()};
            if (search.LeadsBack(indexed)) {
                description.matches = static_cast<std::uint32_t>(likes.size());
                description.index = likes.size() > 1 ? likePlace : 0;
                return indexed;
            }
        }
    }
    description.index = 0;
    description.problem = matches.empty()                     ? "nothing is found by it"
                          : place == 0 && matches.size() >= kCountedMatches ? "it is not among the first " + std::to_string(kCountedMatches) + " elements that match"
                          : place == 0                        ? "it finds other elements, but not this one"
                                                              : "its place among its likes doesn't lead to it";
    return elements.tags;
}

// The windows from `window` up to the top-level one; their tags from the top down.
TagList DescribeWindows(Session& session, HWND window, SelectorComposer& composer, ElementDescription& description) {
    std::vector<DescribedNode> nodes;
    std::vector<bool> mayHaveIndex;
    for (HWND current = window; current; current = Loader::ParentWindow(current)) {
        auto info = session.System().Describe(current);
        if (!info) break;
        const bool withTitle = session.Call(ShouldAddTitleToWndSelectorRequest{0, current}).answer;
        ComposedTag composed = composer.OfWindow(*info, withTitle, Loader::ParentWindow(current) == nullptr);
        DescribedNode& node = nodes.emplace_back();
        node.window = std::move(*info);
        node.included = composed.tag != nullptr;
        node.reason = std::move(composed.reason);
        node.tag = std::move(composed.tag);
        mayHaveIndex.push_back(composed.mayHaveIndex);
    }
    TagList tags;
    for (std::size_t i = nodes.size(); i-- > 0;) {
        if (!nodes[i].tag) continue;
        tags.push_back(nodes[i].tag);
        const auto found = FindWindows(session.System(), tags, Search::SearchScope::Descendants);
        const auto place = std::find(found.windows.begin(), found.windows.end(), nodes[i].window.window);
        if (place == found.windows.end()) {
            description.problem = "its window isn't found by " + NarrowText(WriteTag(*nodes[i].tag));
            continue;
        }
        if (found.windows.size() == 1) continue;
        if (!mayHaveIndex[i]) {
            if (place != found.windows.begin()) description.problem = "several windows fit, and the policy excludes the index";
            continue;
        }
        nodes[i].tag = tags.back() = WithIndex(*nodes[i].tag, place - found.windows.begin() + 1);
        description.windowIndexed = true;
    }
    std::move(nodes.begin(), nodes.end(), std::back_inserter(description.nodes));
    return tags;
}

void CountContributions(BackSearch& search, const TagList& tags, ElementDescription& description) {
    std::size_t tag = tags.size();
    for (DescribedNode& node : description.nodes) {
        if (!node.tag || node.window.window || tag == 0) continue;
        --tag;
        for (const auto& [name, value] : tags[tag]->GetAttributes()) {
            AaTag single;
            single.SetAttribute(name, value);
            const std::wstring written = WriteTag(single);
            TagList without = tags;
            without[tag] = tags[tag]->CloneAttributes();
            without[tag]->ClearAttribute(name);
            node.attributes.push_back({written.substr(5, written.size() - 6), static_cast<std::uint32_t>(search.Matches(without).size())});
        }
    }
}

}  // namespace

ElementDescription DescribeElement(Session& session, const AAObjectIdentifier& target, const DescriptionWishes& wishes) {
    const GetAncestryInfoResponse ancestry = ReadAncestry(session, target, wishes);
    const HWND root = ancestry.nextWindow;
    ElementDescription description;
    SelectorComposer composer(wishes);
    BackSearch search(session, root, target);

    std::vector<AAObjectIdentifier> identifiers;
    for (const AncestryNode& node : ancestry.nodes) identifiers.push_back(node.node);
    const auto views = ReadViews(session, identifiers);
    // A window's own element is named by its window.
    const auto own = session.Call(GetObjectIdFromWindowRequest{session.ClientNumber(), root}).element;
    const bool isWindow = own != AAObjectIdentifier{} && search.IsTarget(own);

    ElementTags elements;
    for (std::size_t i = 0; i < ancestry.nodes.size(); ++i) {
        ComposedTag composed = composer.OfElement(ancestry.nodes[i], views[i], i == 0);
        DescribedNode& node = description.nodes.emplace_back();
        node.view = views[i];
        node.reason = std::move(composed.reason);
        if (isWindow) {
            node.reason = "the element of the window itself";
            continue;
        }
        node.tag = composed.tag;
        node.included = composed.tag != nullptr;
        if (!composed.tag) continue;
        if (i == 0) elements.mayHaveIndex = composed.mayHaveIndex;
        elements.tags.push_back(std::move(composed.tag));
        elements.serverIndex.push_back(ancestry.nodes[i].selectorIndex);
    }
    std::reverse(elements.tags.begin(), elements.tags.end());
    std::reverse(elements.serverIndex.begin(), elements.serverIndex.end());

    description.selector.tags = DescribeWindows(session, root, composer, description);
    if (isWindow || elements.tags.empty()) {
        description.matches = 1;
    } else {
        const TagList tags = SettleIndex(search, elements, description);
        if (wishes.explain) CountContributions(search, tags, description);
        description.selector.tags.insert(description.selector.tags.end(), tags.begin(), tags.end());
    }
    description.notes = composer.Notes();
    return description;
}

}  // namespace Zorvex::Controller
