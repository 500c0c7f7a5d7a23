// Commands that do something to one element, and say whether it took.
#include <algorithm>
#include <cstdio>
#include <ostream>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/Elements.h"
#include "Controller/CommandLine/Identifier.h"

namespace Zorvex::Controller {

namespace {

// What the server said.
struct Outcome {
    bool done = false;
    std::optional<HRESULT> result;   // where the server answers with one
    std::optional<bool> isChecked;   // the answer to a question
};

constexpr HRESULT kNotCheckable = static_cast<HRESULT>(0x80040221u);

Outcome OfResult(HRESULT result) { return {SUCCEEDED(result), result, std::nullopt}; }

Outcome Do(Session& session, const ActionCommand& command, const AAObjectIdentifier& element) {
    switch (command.action) {
        case ElementAction::Focus: return {session.Call(SetFocusRequest{{element}}).success, std::nullopt, std::nullopt};
        case ElementAction::Click: return OfResult(session.Call(DoDefaultActionRequest{{element}}).result);
        case ElementAction::Check: return OfResult(session.Call(SetIsCheckedRequest{element, true}).result);
        case ElementAction::Uncheck: return OfResult(session.Call(SetIsCheckedRequest{element, false}).result);
        case ElementAction::ScrollTo: return OfResult(session.Call(ScrollIntoViewRequest{{element}}).result);
        case ElementAction::Write: return {session.Call(WriteTextRequest{element, command.text}).success, std::nullopt, std::nullopt};
        case ElementAction::Expand: return OfResult(session.Call(ExpandDomAriaComboRequest{element, true}).result);
        case ElementAction::Collapse: return OfResult(session.Call(ExpandDomAriaComboRequest{element, false}).result);
        case ElementAction::IsChecked: break;
    }
    const auto answer = session.Call(GetIsCheckedRequest{{element}});
    return {answer.success, std::nullopt, answer.isChecked};
}

bool HasState(const ElementView& view, std::wstring_view state) {
    const std::wstring text = L", " + view.state + L",";
    return text.find(L", " + std::wstring(state) + L",") != std::wstring::npos;
}

std::wstring OneLineEnd(std::wstring text) {
    std::erase(text, L'\r');
    return text;
}

// Whether what was wanted is there now. Nothing where it can't be told from the element.
std::optional<bool> Took(Session& session, const ActionCommand& command, const AAObjectIdentifier& element, const ElementView& after) {
    switch (command.action) {
        case ElementAction::Focus: return HasState(after, L"focused");
        case ElementAction::Check: return session.Call(GetIsCheckedRequest{{element}}).isChecked;
        case ElementAction::Uncheck: return !session.Call(GetIsCheckedRequest{{element}}).isChecked;
        case ElementAction::ScrollTo: return !HasState(after, L"offscreen");
        case ElementAction::Write: return OneLineEnd(ReadTexts(session, {element}, L"value").front()) == OneLineEnd(command.text);
        case ElementAction::Expand: return HasState(after, L"expanded");
        case ElementAction::Collapse: return !HasState(after, L"expanded");
        case ElementAction::Click:
        case ElementAction::IsChecked: break;
    }
    return std::nullopt;
}

const char* DoneText(ElementAction action) {
    switch (action) {
        case ElementAction::Focus: return "focused";
        case ElementAction::Click: return "clicked";
        case ElementAction::Check: return "checked";
        case ElementAction::Uncheck: return "unchecked";
        case ElementAction::ScrollTo: return "scrolled to";
        case ElementAction::Write: return "wrote to";
        case ElementAction::Expand: return "expanded";
        case ElementAction::Collapse: return "collapsed";
        case ElementAction::IsChecked: break;
    }
    return "";
}

std::string CodeText(HRESULT result) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(result));
    return code;
}

// Why the server said no, as far as it tells.
std::string RefusalText(const ActionCommand& command, const Outcome& outcome, const ElementView& view) {
    const std::string what = "the server said no for " + ViewText(view);
    if (outcome.result == kNotCheckable)
        return what + ": " + (view.role == L"radio button" ? "a radio button can't be unchecked; check another one of its group"
                                                           : "it is no check box and no radio button");
    if (command.action == ElementAction::IsChecked) return what + ": it is no check box and no radio button";
    if (outcome.result) return what + ": " + CodeText(*outcome.result);
    if (command.action == ElementAction::Focus) return what + ": it can't take the focus";
    return what + ": it takes no text";
}

void Write(JsonWriter& json, const Outcome& outcome, const ElementView& view, std::optional<bool> took) {
    json.BeginObject().Key("done").Flag(outcome.done);
    json.Key("result");
    if (outcome.result) json.Text(std::string_view(CodeText(*outcome.result)));
    else json.Null();
    if (outcome.isChecked) json.Key("isChecked").Flag(*outcome.isChecked);
    json.Key("verified");
    if (took) json.Flag(*took);
    else json.Null();
    WriteView(json, view);
    json.EndObject().Finish();
}

ExitCode ShowOne(Session& session, const AAObjectIdentifier& element, Output& output) {
    const ElementView view = ReadViews(session, {element}).front();
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject();
        WriteView(json, view);
        json.EndObject().Finish();
    } else {
        output.out << IdentifierText(element) << "  " << ViewText(view) << '\n';
    }
    return ExitCode::Done;
}

}  // namespace

ExitCode RunAction(Session& session, const ActionCommand& command, Output& output) {
    const AAObjectIdentifier element = FindTarget(session, command.target);
    const ElementView before = ReadViews(session, {element}).front();
    const Outcome outcome = Do(session, command, element);
    const ElementView after = command.verify ? ReadViews(session, {element}).front() : before;
    const std::optional<bool> took = command.verify && outcome.done ? Took(session, command, element, after) : std::nullopt;
    if (output.json) {
        JsonWriter json(output.out);
        Write(json, outcome, after, took);
    }
    if (!outcome.done) {
        output.err << RefusalText(command, outcome, before) << '\n';
        return ExitCode::NotFound;
    }
    if (!output.json) {
        if (outcome.isChecked) output.out << (*outcome.isChecked ? "checked" : "not checked") << '\n';
        else output.out << DoneText(command.action) << ' ' << ViewText(before) << '\n';
        if (command.verify && command.action != ElementAction::IsChecked) {
            if (after.state != before.state) output.out << "its state is now [" << NarrowText(after.state) << "]\n";
            else output.out << "its state is what it was\n";
        }
    }
    if (took == false) {
        output.err << "it didn't take: " << ViewText(after) << '\n';
        return ExitCode::NotFound;
    }
    return ExitCode::Done;
}

ExitCode RunSibling(Session& session, const SiblingCommand& command, Output& output) {
    const AAObjectIdentifier element = FindTarget(session, command.target);
    const AAObjectIdentifier sibling = session.Call(GetSiblingRequest{element, command.offset}).element;
    if (sibling == AAObjectIdentifier{})
        throw CommandFailure(ExitCode::NotFound, "the element has no sibling " + std::to_string(command.offset) + " places on");
    return ShowOne(session, sibling, output);
}

ExitCode RunFocused(Session& session, const FocusedCommand&, Output& output) {
    session.Open();
    const AAObjectIdentifier element = session.Call(GetFocusedElemRequest{session.ClientNumber(), session.Window().window}).element;
    if (element == AAObjectIdentifier{}) throw CommandFailure(ExitCode::NotFound, "no element of the window has the focus");
    return ShowOne(session, element, output);
}

ExitCode RunEqual(Session& session, const EqualCommand& command, Output& output) {
    const AAObjectIdentifier first = FindTarget(session, command.first), second = FindTarget(session, command.second);
    const bool equal = session.Call(AreEqualRequest{first, second}).answer;
    if (output.json) JsonWriter(output.out).BeginObject().Key("equal").Flag(equal).EndObject().Finish();
    else output.out << (equal ? "the same element" : "two elements") << '\n';
    return equal ? ExitCode::Done : ExitCode::NotFound;
}

}  // namespace Zorvex::Controller
