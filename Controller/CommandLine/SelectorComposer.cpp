#include "Controller/CommandLine/SelectorComposer.h"

#include <algorithm>
#include <cstdlib>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/PolicyNode.h"
#include "RuntimeCore/Selectors/Policy/SelectorTagPolicy.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"

namespace Zorvex::Controller {

namespace {

// Why the server's own rule takes a node in or leaves it out, as far as its role and name tell.
std::string DefaultReason(const AncestryNode& record, const ElementView& view, bool isTarget) {
    if (isTarget) return "the element itself";
    if (record.included) return view.role == L"row" ? "a row" : "it has a name";
    if (view.role == L"window" || view.role == L"client") return "its role is " + NarrowText(view.role);
    if (view.role == L"dialog") return "its role is dialog";
    if (view.name.empty()) return "it has no name";
    return "it belongs to another window than the element, or to a menu";
}

// A value for the attribute of this name, from a text. Null for a number that isn't one.
std::shared_ptr<IAttrValue> ValueOf(const ISelectorTag& tag, const CString& name, const std::shared_ptr<IAttrValue>& wanted) {
    if (tag.GetAttributeKind(name) != static_cast<std::uint32_t>(AttributeValueKind::Number)) {
        if (wanted->GetMatchingType() == MatchingTypeNone) wanted->SetMatchingType(MatchingTypeNormal);
        return wanted;
    }
    const std::string digits = NarrowText(wanted->ToString());
    char* end = nullptr;
    const long long number = std::strtoll(digits.c_str(), &end, 10);
    if (digits.empty() || *end) return nullptr;
    return std::make_shared<NumberValue>(number, MatchingTypeNormal);
}

void MakeFuzzy(const ISelectorTag& tag, double level) {
    for (const auto& [name, value] : tag.GetAttributes()) {
        if (name != L"name" && name != L"title" && name != L"virtualname") continue;
        const auto text = std::dynamic_pointer_cast<StringValue>(value);
        if (!text) continue;
        // A shortened text ends in a wildcard, which resembles nothing.
        CString plain = text->GetValue();
        if (!plain.empty() && plain.back() == L'*') plain.pop_back();
        text->SetValue(plain);
        text->SetMatchingType(MatchingTypeFuzzy);
        text->SetFuzzyLevel(level);
    }
}

}  // namespace

ComposedTag SelectorComposer::OfElement(const AncestryNode& record, const ElementView& view, bool isTarget) {
    std::map<CString, CString> known = record.allAttributes;
    known.insert(record.minimalAttributes.begin(), record.minimalAttributes.end());
    return Compose(std::make_shared<AaTag>(), L"ctrl", isTarget ? Generation::LevelLeaf : Generation::LevelInner, record.included,
                   record.minimalAttributes, std::move(known), DefaultReason(record, view, isTarget));
}

ComposedTag SelectorComposer::OfWindow(const Loader::WindowInfo& window, bool withTitle, bool isTopLevel) {
    std::map<CString, CString> carried, known;
    known[L"pid"] = std::to_wstring(window.processId);
    known[L"tid"] = std::to_wstring(window.threadId);
    for (const auto& [name, text] : {std::pair{L"app", window.processName}, {L"cls", window.windowClass}, {L"title", window.title}})
        if (!text.empty()) known[name] = text;
    for (const wchar_t* name : {L"app", L"cls", L"title"})
        if (known.contains(name) && (withTitle || name != std::wstring_view(L"title"))) carried[name] = known[name];
    return Compose(std::make_shared<WndTag>(), L"wnd", isTopLevel ? Generation::LevelTopLevel : Generation::LevelInner, true, carried,
                   std::move(known), isTopLevel ? "the top-level window" : "a window on the way");
}

ComposedTag SelectorComposer::Compose(std::shared_ptr<ISelectorTag> tag, const wchar_t* tagName, std::uint32_t level, bool included,
                                      const std::map<CString, CString>& carried, std::map<CString, CString> known, std::string reason) {
    const Generation::ContextData contextData;  // nodes that are told of share nothing
    PolicyNode node(level, included, std::move(known));
    if (m_wishes.policy) {
        m_wishes.policy->GetTagPolicy(tagName).Apply(contextData, node);
        const bool in = node.ResolveHierarchyPresence(contextData) == Generation::HierarchyPresence::Included;
        const bool was = included || level != Generation::LevelInner;
        if (in != was) reason = in ? "the policy includes it" : "the policy excludes it";
    }
    ComposedTag composed{nullptr, std::move(reason), !node.GetExcludedAttributes().contains(L"idx")};
    if (node.ResolveHierarchyPresence(contextData) != Generation::HierarchyPresence::Included) return composed;
    for (const auto& [name, text] : carried)
        if (!text.empty() && !node.GetExcludedAttributes().contains(name))
            tag->SetAttribute(name, std::make_shared<StringValue>(text, MatchingTypeNormal));
    for (const auto& [name, value] : node.GetAttributeValues()) {
        const auto usable = ValueOf(*tag, name, value);
        tag->SetAttribute(name, usable);
        if (usable && tag->IsAttributeSet(name)) continue;
        const std::string note = "the policy sets " + NarrowText(name) + ", which a " + NarrowText(tagName) + " tag can't carry";
        if (std::find(m_notes.begin(), m_notes.end(), note) == m_notes.end()) m_notes.push_back(note);
    }
    tag->SetLimitsEveryLevel(false);  // as in a selector that was read from its text
    if (m_wishes.fuzzyLevel) MakeFuzzy(*tag, *m_wishes.fuzzyLevel);
    composed.tag = std::move(tag);
    return composed;
}

}  // namespace Zorvex::Controller
