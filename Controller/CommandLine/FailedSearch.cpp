#include "Controller/CommandLine/FailedSearch.h"

#include <algorithm>
#include <ostream>
#include <set>
#include <tuple>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Identifier.h"
#include "Controller/CommandLine/Output.h"
#include "RuntimeCore/Selectors/ValueMatcher/FuzzyRatio.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex::Controller {

namespace {

constexpr std::size_t kExamined = 5'000;
constexpr std::size_t kParents = 50;
constexpr std::size_t kShown = 5;

// What the search itself tests; idx is a position.
constexpr const wchar_t* kTested[] = {L"role", L"name", L"automationid", L"labeledby", L"virtualname",
                                      L"text", L"helpText", L"aastate", L"rowName"};

std::set<std::wstring> States(const std::wstring& text) {
    std::set<std::wstring> states;
    std::wstring state;
    for (const wchar_t unit : text + L",") {
        if (unit != L',') {
            if (!(unit == L' ' && state.empty())) state += unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 32) : unit;
            continue;
        }
        while (!state.empty() && state.back() == L' ') state.pop_back();
        if (!state.empty()) states.insert(state);
        state.clear();
    }
    return states;
}

// How many of the wanted states there are.
double StateScore(const std::wstring& wanted, const std::wstring& actual) {
    const auto required = States(wanted), present = States(actual);
    if (required.empty()) return 1;
    std::size_t found = 0;
    for (const std::wstring& state : required) found += present.count(state);
    return static_cast<double>(found) / static_cast<double>(required.size());
}

struct Judgement {
    bool fits;
    double score;
};

// Of a value that doesn't match, how near the text comes: a wildcard or an expression is taken as plain text, so that a
// slip of the pen still shows the element that was meant.
Judgement Judge(IAttrValue& value, const std::wstring& name, const std::wstring& actual) {
    if (name == L"aastate" && value.GetMatchingType() == MatchingTypeNormal) {
        const double score = StateScore(value.ToString(), actual);
        return {score == 1, score};
    }
    ScoreStatistics stats;
    const bool fits = value.Matches(CString(actual), &stats);
    const bool fuzzy = value.GetMatchingType() == MatchingTypeFuzzy || value.GetMatchingType() == MatchingTypeFuzzyAlternative;
    if (fuzzy || fits) return {fits, stats.count ? stats.mean : 1};
    std::wstring plain = value.ToString();
    std::erase_if(plain, [](wchar_t unit) { return unit == L'*' || unit == L'?' || unit == L'\\'; });
    return {false, 0.99 * FuzzyRatio(plain, actual)};
}

std::wstring Wanted(const std::wstring& name, const std::shared_ptr<IAttrValue>& value) {
    AaTag single;
    single.SetAttribute(name, value);
    const std::wstring text = WriteTag(single);
    const std::size_t open = text.find(L'['), close = text.rfind(L']');
    return open == std::wstring::npos ? text : text.substr(open + 1, close - open - 1);
}

// The elements that the failed tag was offered: those below the ones that the tag before it matched.
std::vector<AAObjectIdentifier> Offered(Session& session, const AAObjectIdentifier& root, const Selector& selector, std::size_t tag,
                                        const std::vector<Search::CrossProcessResultSet>& intermediate, bool& cut) {
    std::vector<AAObjectIdentifier> parents;
    if (tag == 0) parents.push_back(root);
    else
        for (const auto& result : intermediate[tag - 1].results) parents.push_back(result.identifier);
    cut = parents.size() > kParents;
    parents.resize(std::min(parents.size(), kParents));

    Search::SelectorEntry entry;
    entry.tags = {std::make_shared<AaTag>()};
    const bool childrenOnly = selector.scope == Search::SearchScope::ChildrenOnly ||
                              (tag == 0 && selector.scope == Search::SearchScope::DescendantsOfTopLevel);
    entry.options.scope = childrenOnly ? Search::SearchScope::ChildrenOnly : Search::SearchScope::Descendants;
    entry.options.refreshLocation = false;
    std::vector<AAObjectIdentifier> offered;
    std::set<std::tuple<HWND, std::uint32_t, std::int32_t>> known;  // one may lie below several
    for (const AAObjectIdentifier& parent : parents) {
        entry.options.maxResults = static_cast<std::uint32_t>(kExamined + 1);
        for (const AAObjectIdentifier& element : Search(session, parent, entry)) {
            if (!known.emplace(element.hWnd, element.containerId, element.childId).second) continue;
            if (offered.size() == kExamined) {
                cut = true;
                return offered;
            }
            offered.push_back(element);
        }
    }
    return offered;
}

}  // namespace

SearchReport ExamineFailure(Session& session, const AAObjectIdentifier& root, const Selector& selector,
                            const std::vector<Search::CrossProcessResultSet>& intermediate) {
    SearchReport report;
    while (report.failedTag < intermediate.size() && report.failedTag + 1 < selector.tags.size() &&
           !intermediate[report.failedTag].results.empty())
        report.matchedByTag.push_back(intermediate[report.failedTag++].results.size());
    if (selector.tags.empty()) return report;

    const auto offered = Offered(session, root, selector, report.failedTag, intermediate, report.cut);
    report.examined = offered.size();
    std::vector<Candidate> candidates(offered.size());
    const ISelectorTag& tag = *selector.tags[report.failedTag];
    for (const wchar_t* name : kTested) {
        const auto set = tag.GetAttribute(name);
        if (!set || !set->GetEnabled()) continue;
        const auto value = set->Clone();
        const std::wstring wanted = Wanted(name, set);
        const auto texts = ReadTexts(session, offered, name);
        for (std::size_t i = 0; i < offered.size(); ++i) {
            Candidate& candidate = candidates[i];
            const Judgement judgement = Judge(*value, name, texts[i]);
            candidate.fits = judgement.fits && (candidate.attributes.empty() || candidate.fits);
            candidate.score += judgement.score;
            candidate.attributes.push_back({name, judgement.score, wanted, texts[i]});
        }
    }
    std::vector<std::size_t> order(offered.size());
    for (std::size_t i = 0; i < offered.size(); ++i) {
        order[i] = i;
        Candidate& candidate = candidates[i];
        if (candidate.attributes.empty()) candidate.fits = true, candidate.score = 1;
        else candidate.score /= static_cast<double>(candidate.attributes.size());
        report.fitting += candidate.fits;
    }
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return candidates[a].fits != candidates[b].fits ? candidates[a].fits : candidates[a].score > candidates[b].score;
    });
    order.resize(std::min(order.size(), kShown));
    std::vector<AAObjectIdentifier> best;
    for (const std::size_t i : order) best.push_back(offered[i]);
    const auto views = ReadViews(session, best);
    for (std::size_t i = 0; i < order.size(); ++i) {
        candidates[order[i]].view = views[i];
        report.nearest.push_back(std::move(candidates[order[i]]));
    }
    return report;
}

void PrintReport(const SearchReport& report, const Selector& selector, const FindCommand& command, std::ostream& out) {
    const auto elements = [](std::size_t count) { return std::to_string(count) + (count == 1 ? " element" : " elements"); };
    out << "not found: tag " << report.failedTag + 1 << " of " << selector.tags.size() << ", "
        << NarrowText(WriteTag(*selector.tags[report.failedTag])) << ", found nothing among " << elements(report.examined)
        << (report.cut ? " that were looked at, of more" : "") << '\n';
    for (std::size_t i = 0; i < report.matchedByTag.size(); ++i)
        out << "  tag " << i + 1 << ", " << NarrowText(WriteTag(*selector.tags[i])) << ", matched " << elements(report.matchedByTag[i]) << '\n';
    if (report.fitting) {
        std::string reasons;
        const auto index = std::dynamic_pointer_cast<NumberValue>(selector.tags[report.failedTag]->GetAttribute(L"idx"));
        if (index && index->GetEnabled()) reasons += "idx=" + std::to_string(index->GetValue()) + ", ";
        if (command.visibleOnly) reasons += "--visible, ";
        if (command.minimumScore > 0) reasons += "--min-score " + ScoreText(command.minimumScore) + ", ";
        out << "  the attributes fit " << elements(report.fitting) << "; kept from being found by " << reasons
            << (reasons.empty() ? "" : "or ") << "the time-out\n";
    }
    if (report.nearest.empty()) return;
    out << "nearest:\n";
    for (const Candidate& candidate : report.nearest) {
        out << "  " << ScoreText(candidate.score) << "  " << ViewText(candidate.view) << "\n        " << IdentifierText(candidate.view.identifier) << '\n';
        for (const AttributeScore& attribute : candidate.attributes)
            out << "        " << ScoreText(attribute.score) << "  " << NarrowText(attribute.wanted) << "  is " << QuotedText(attribute.actual) << '\n';
    }
}

void WriteReport(JsonWriter& json, const SearchReport& report, const Selector& selector) {
    json.Key("failedTag").Number(static_cast<std::int64_t>(report.failedTag) + 1);
    json.Key("failedTagText").Text(WriteTag(*selector.tags[report.failedTag]));
    json.Key("matchedByTag").BeginArray();
    for (const std::size_t count : report.matchedByTag) json.Number(static_cast<std::int64_t>(count));
    json.EndArray().Key("examined").Number(static_cast<std::int64_t>(report.examined)).Key("cut").Flag(report.cut);
    json.Key("fitting").Number(static_cast<std::int64_t>(report.fitting)).Key("nearest").BeginArray();
    for (const Candidate& candidate : report.nearest) {
        json.BeginObject();
        WriteView(json, candidate.view);
        json.Key("score").Fraction(candidate.score).Key("attributes").BeginArray();
        for (const AttributeScore& attribute : candidate.attributes)
            json.BeginObject().Key("name").Text(attribute.name).Key("score").Fraction(attribute.score).Key("wanted").Text(attribute.wanted)
                .Key("actual").Text(attribute.actual).EndObject();
        json.EndArray().EndObject();
    }
    json.EndArray();
}

}  // namespace Zorvex::Controller
