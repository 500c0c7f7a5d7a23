// The command selector: the description by which an element is found again.
#include <cstdio>
#include <ostream>

#include "Common/include/JsonSerializer/JsonText.h"
#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/ElementDescription.h"
#include "Controller/CommandLine/ElementTree.h"
#include "Controller/CommandLine/Identifier.h"
#include "Controller/CommandLine/SystemChoice.h"

namespace Zorvex::Controller {

namespace {

constexpr std::size_t kSurveyedDepth = 1'000;

// A policy may be written by hand: a mistake is told here, where the server would go on without it.
void ReadPolicy(const std::wstring& file, DescriptionWishes& wishes) {
    const std::string text = ReadWholeFile(file);
    if (!Utf8ToUtf16(text, wishes.policyText))
        throw CommandFailure(ExitCode::WrongArguments, NarrowText(file) + ": a policy is UTF-8 text");
    auto [result, policy] = Generation::SelectorPolicy::FromString(wishes.policyText);
    if (result == Generation::SelectorPolicyParseResult::Success) {
        wishes.policy = std::move(policy);
        return;
    }
    JsonReadError error;
    const bool isJson = ReadJson(text, &error) != nullptr;
    throw CommandFailure(ExitCode::WrongArguments,
                         NarrowText(file) + ": " +
                             (isJson ? "this JSON is no policy; docs/selector-policies.md has the form"
                                     : error.message));
}

std::string Count(std::uint32_t matches) {
    return (matches >= kCountedMatches ? "at least " : "") + std::to_string(matches) + (matches == 1 ? " element" : " elements");
}

void Print(const ElementDescription& description, bool explain, std::ostream& out) {
    if (description.problem.empty()) {
        out << NarrowText(WriteSelector(description.selector)) << '\n';
        if (description.index)
            out << "idx=" << description.index << ": " << Count(description.matches)
                << " match without it; it finds another one when elements come or go before it\n";
        else if (description.matches == 1)
            out << "1 element matches: the one that was meant\n";
        else
            out << Count(description.matches) << " resemble it enough; the one that was meant does so best\n";
        if (description.windowIndexed) out << "a window needs an index: others have the same program, class and title\n";
    } else {
        out << "no selector leads back to the element: " << description.problem << '\n'
            << "the nearest is " << NarrowText(WriteSelector(description.selector)) << '\n';
    }
    for (const std::string& note : description.notes) out << "note: " << note << '\n';
    if (!explain) return;
    out << "from the element up:\n";
    for (const DescribedNode& node : description.nodes) {
        out << (node.included ? "  in   " : "  out  ");
        if (node.window.window) out << "window " << HandleText(node.window.window) << ' ' << NarrowText(node.window.windowClass) << ' ' << QuotedText(node.window.title);
        else out << ViewText(node.view);
        out << ": " << node.reason << '\n';
        if (node.window.window && node.tag) out << "         " << NarrowText(WriteTag(*node.tag)) << '\n';
        for (const DescribedAttribute& attribute : node.attributes)
            out << "         " << NarrowText(attribute.text) << "  without it " << Count(attribute.matchesWithout)
                << (attribute.matchesWithout == 1 ? " matches" : " match") << '\n';
    }
}

void Write(const ElementDescription& description, const AAObjectIdentifier& target, bool explain, std::ostream& out) {
    JsonWriter json(out);
    json.BeginObject().Key("selector").Text(WriteSelector(description.selector));
    json.Key("leadsBack").Flag(description.problem.empty());
    json.Key("problem");
    if (description.problem.empty()) json.Null();
    else json.Text(std::string_view(description.problem));
    json.Key("matches").Number(description.matches);
    json.Key("index");
    if (description.index) json.Number(description.index);
    else json.Null();
    json.Key("windowIndexed").Flag(description.windowIndexed);
    json.Key("identifier").Text(std::string_view(IdentifierText(target)));
    json.Key("notes").BeginArray();
    for (const std::string& note : description.notes) json.Text(std::string_view(note));
    json.EndArray();
    if (explain) {
        json.Key("nodes").BeginArray();
        for (const DescribedNode& node : description.nodes) {
            json.BeginObject().Key("included").Flag(node.included).Key("reason").Text(std::string_view(node.reason));
            if (node.window.window) {
                json.Key("window").Text(std::string_view(HandleText(node.window.window)));
                json.Key("class").Text(node.window.windowClass).Key("title").Text(node.window.title);
            } else {
                WriteView(json, node.view);
            }
            json.Key("tag");
            if (node.tag) json.Text(WriteTag(*node.tag));
            else json.Null();
            json.Key("attributes").BeginArray();
            for (const DescribedAttribute& attribute : node.attributes)
                json.BeginObject().Key("text").Text(attribute.text).Key("matchesWithout").Number(attribute.matchesWithout).EndObject();
            json.EndArray().EndObject();
        }
        json.EndArray();
    }
    json.EndObject().Finish();
}

// How well the elements of a whole window can be told again.
struct Survey {
    struct Miss {
        ElementView view;
        std::string problem;
        std::wstring selector;  // the nearest
    };
    std::size_t elements = 0, foundAgain = 0, indexed = 0;
    bool cut = false;  // there are more elements than were taken
    std::vector<Miss> misses;
};

// The whole road: the text is read again and searched for, as another program would.
std::string ProblemOfText(Session& session, const std::wstring& selector, const AAObjectIdentifier& target) {
    try {
        const AAObjectIdentifier found = FindTarget(session, {selector});
        return session.Call(AreEqualRequest{found, target}).answer ? "" : "the selector finds another element";
    } catch (const CommandFailure& failure) {
        return failure.what();
    }
}

Survey TakeSurvey(Session& session, const SelectorCommand& command, const DescriptionWishes& wishes) {
    session.Open();
    const HWND window = session.Window().window;
    const ElementTree tree = ReadTree(session, kSurveyedDepth, command.maximum);
    Survey survey;
    survey.cut = tree.cut;
    for (const std::size_t place : DepthFirst(tree)) {
        const AAObjectIdentifier& element = tree.nodes[place].identifier;
        ++survey.elements;
        std::string problem;
        std::wstring selector;
        try {
            session.MoveTo(window);
            const ElementDescription description = DescribeElement(session, element, wishes);
            selector = WriteSelector(description.selector);
            survey.indexed += description.index != 0;
            problem = description.problem.empty() ? ProblemOfText(session, selector, element) : description.problem;
        } catch (const CommandFailure& failure) {
            if (failure.Code() != ExitCode::NotFound) throw;
            problem = failure.what();
        }
        if (problem.empty()) ++survey.foundAgain;
        else survey.misses.push_back({ReadViews(session, {element}).front(), std::move(problem), std::move(selector)});
    }
    return survey;
}

ExitCode ShowSurvey(const Survey& survey, Output& output) {
    const double share = survey.elements ? 100.0 * static_cast<double>(survey.foundAgain) / static_cast<double>(survey.elements) : 100.0;
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("elements").Number(static_cast<std::int64_t>(survey.elements));
        json.Key("foundAgain").Number(static_cast<std::int64_t>(survey.foundAgain));
        json.Key("indexed").Number(static_cast<std::int64_t>(survey.indexed)).Key("cut").Flag(survey.cut).Key("misses").BeginArray();
        for (const Survey::Miss& miss : survey.misses) {
            json.BeginObject();
            WriteView(json, miss.view);
            json.Key("problem").Text(std::string_view(miss.problem)).Key("selector").Text(miss.selector).EndObject();
        }
        json.EndArray().EndObject().Finish();
    } else {
        for (const Survey::Miss& miss : survey.misses) {
            output.out << "missed " << ViewText(miss.view) << ": " << miss.problem << '\n';
            if (!miss.selector.empty()) output.out << "  " << NarrowText(miss.selector) << '\n';
        }
        char text[32];
        std::snprintf(text, sizeof text, "%.1f %%", share);
        output.out << text << ": " << survey.foundAgain << " of " << survey.elements << " elements are found again by their selectors, "
                   << survey.indexed << " by an index" << (survey.cut ? "; there are more elements than were taken" : "") << '\n';
    }
    return survey.misses.empty() ? ExitCode::Done : ExitCode::NotFound;
}

}  // namespace

ExitCode RunSelector(Session& session, const SelectorCommand& command, Output& output) {
    DescriptionWishes wishes;
    if (!command.policyFile.empty()) ReadPolicy(command.policyFile, wishes);
    wishes.aaOnly = command.aaOnly;
    wishes.fuzzyLevel = command.fuzzyLevel;
    wishes.explain = command.explain;
    if (command.all) return ShowSurvey(TakeSurvey(session, command, wishes), output);
    const AAObjectIdentifier target = FindTarget(session, command.target);
    const ElementDescription description = DescribeElement(session, target, wishes);
    if (output.json) Write(description, target, command.explain, output.out);
    else Print(description, command.explain, output.out);
    return description.problem.empty() ? ExitCode::Done : ExitCode::NotFound;
}

}  // namespace Zorvex::Controller
