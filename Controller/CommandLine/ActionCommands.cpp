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

// What a second look found.
enum class Verdict { NothingToSee, Took, DidNotTake, CannotTell };

constexpr HRESULT kNotCheckable = static_cast<HRESULT>(0x80040221u);

Outcome OfResult(HRESULT result) { return {SUCCEEDED(result), result, std::nullopt}; }

Outcome Do(Session& session, const ActionCommand& command, const AAObjectIdentifier& element) {
    switch (command.action) {
        case ElementAction::Focus: return {session.Call(SetFocusRequest{{element}}).success, std::nullopt, std::nullopt};
        case ElementAction::Click: return OfResult(session.Call(DoDefaultActionRequest{{element}}).result);
        case ElementAction::Check: return OfResult(session.Call(SetIsCheckedRequest{element, true}).result);
        case ElementAction::Uncheck: return OfResult(session.Call(SetIsCheckedRequest{element, false}).result);
        case ElementAction::ScrollTo: {
            // Another success says that the time for coming into view ran out.
            const HRESULT result = session.Call(ScrollIntoViewRequest{{element}}).result;
            return {result == S_OK, result, std::nullopt};
        }
        case ElementAction::Write: return {session.Call(WriteTextRequest{element, command.text}).success, std::nullopt, std::nullopt};
        case ElementAction::Expand: return OfResult(session.Call(ExpandDomAriaComboRequest{element, true}).result);
        case ElementAction::Collapse: return OfResult(session.Call(ExpandDomAriaComboRequest{element, false}).result);
        case ElementAction::IsChecked: break;
    }
    const auto answer = session.Call(GetIsCheckedRequest{{element}});
    return {answer.success, std::nullopt, answer.isChecked};
}

// By the bits, since the words of a state are in the language of the system.
Verdict HasState(Session& session, const AAObjectIdentifier& element, LONG bit, bool wanted) {
    const auto state = ReadState(session, element);
    if (!state) return Verdict::CannotTell;
    return ((*state & bit) != 0) == wanted ? Verdict::Took : Verdict::DidNotTake;
}

Verdict IsChecked(Session& session, const AAObjectIdentifier& element, bool wanted) {
    const auto answer = session.Call(GetIsCheckedRequest{{element}});
    if (!answer.success) return Verdict::CannotTell;
    return answer.isChecked == wanted ? Verdict::Took : Verdict::DidNotTake;
}

std::wstring OneLineEnd(std::wstring text) {
    std::erase(text, L'\r');
    return text;
}

Verdict HasValue(Session& session, const AAObjectIdentifier& element, const std::wstring& wanted) {
    const CComVariant value = ReadAttribute(session, {element}, L"value").front();
    if (value.vt != VT_BSTR) return Verdict::CannotTell;
    const std::wstring text = value.bstrVal ? std::wstring(value.bstrVal, ::SysStringLen(value.bstrVal)) : std::wstring();
    return OneLineEnd(text) == OneLineEnd(wanted) ? Verdict::Took : Verdict::DidNotTake;
}

// Whether what was wanted is there now.
Verdict LookAgain(Session& session, const ActionCommand& command, const AAObjectIdentifier& element) {
    switch (command.action) {
        case ElementAction::Focus: return HasState(session, element, STATE_SYSTEM_FOCUSED, true);
        case ElementAction::Check: return IsChecked(session, element, true);
        case ElementAction::Uncheck: return IsChecked(session, element, false);
        case ElementAction::ScrollTo: return HasState(session, element, STATE_SYSTEM_OFFSCREEN, false);
        case ElementAction::Write: return HasValue(session, element, command.text);
        case ElementAction::Expand: return HasState(session, element, STATE_SYSTEM_EXPANDED, true);
        case ElementAction::Collapse: return HasState(session, element, STATE_SYSTEM_EXPANDED, false);
        case ElementAction::Click:
        case ElementAction::IsChecked: break;
    }
    return Verdict::NothingToSee;
}

// Why the server did nothing and called it a success; empty if it acted.
std::string IdleText(Session& session, const ActionCommand& command, const ElementView& view) {
    if (command.action != ElementAction::Expand && command.action != ElementAction::Collapse) return {};
    const std::string what = "nothing was done: " + ViewText(view);
    if (!view.identifier.isDomAria || view.role != L"combo box") return what + " is no combo box of a web page";
    const auto answer = session.Call(GetNativeAttributeRequest{{view.identifier, L"accDefaultAction"}});
    const std::wstring action = answer.value.vt == VT_BSTR && answer.value.bstrVal ? answer.value.bstrVal : L"";
    if (action == L"open") return {};
    return what + " is known for a combo box of a web page by the default action \"open\", and has " + QuotedText(action);
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
    if (command.action == ElementAction::ScrollTo && outcome.result == S_FALSE) return what + ": it didn't come to rest in view in time";
    if (command.action == ElementAction::IsChecked) return what + ": it is no check box and no radio button";
    if (outcome.result) return what + ": " + CodeText(*outcome.result);
    if (command.action == ElementAction::Focus) return what + ": it can't take the focus";
    return what + ": it takes no text";
}

void Write(JsonWriter& json, const Outcome& outcome, bool isIdle, const ElementView& view, Verdict verdict) {
    json.BeginObject().Key("done").Flag(outcome.done && !isIdle);
    json.Key("result");
    if (outcome.result) json.Text(std::string_view(CodeText(*outcome.result)));
    else json.Null();
    if (outcome.isChecked) json.Key("isChecked").Flag(*outcome.isChecked);
    json.Key("verified");
    if (verdict == Verdict::Took || verdict == Verdict::DidNotTake) json.Flag(verdict == Verdict::Took);
    else json.Null();
    WriteView(json, view);
    json.EndObject().Finish();
}

// What the second look showed, where nothing is wrong.
std::string SeenText(Verdict verdict, const ElementView& before, const ElementView& after) {
    if (after.role.empty() && !before.role.empty()) return "it can't be read any more";
    const std::string state = "its state is now [" + NarrowText(after.state) + "]";
    if (verdict == Verdict::Took) return after.state == before.state ? "it took" : "it took; " + state;
    return after.state == before.state ? "its state is what it was" : state;
}

bool IsAboutCheckState(ElementAction action) {
    return action == ElementAction::Check || action == ElementAction::Uncheck || action == ElementAction::IsChecked;
}

// A check box that is a window of its own is known to the server by its window; the window's element is the frame.
AAObjectIdentifier ActedOn(const ActionCommand& command, AAObjectIdentifier element) {
    if (IsAboutCheckState(command.action) && ReadHandle(command.target.text)) element.containerId = 0;
    return element;
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
    const AAObjectIdentifier shown = FindTarget(session, command.target), element = ActedOn(command, shown);
    const ElementView before = ReadViews(session, {shown}).front();
    const std::string idle = IdleText(session, command, before);
    const Outcome outcome = Do(session, command, element);
    const bool verifies = command.verify && outcome.done;
    const Verdict verdict = verifies ? LookAgain(session, command, element) : Verdict::NothingToSee;
    const ElementView after = command.verify ? ReadViews(session, {shown}).front() : before;
    if (output.json) {
        JsonWriter json(output.out);
        Write(json, outcome, !idle.empty(), after, verdict);
    }
    if (!outcome.done) {
        output.err << RefusalText(command, outcome, before) << '\n';
        return ExitCode::NotFound;
    }
    if (!output.json) {
        if (outcome.isChecked) output.out << (*outcome.isChecked ? "checked" : "not checked") << '\n';
        else if (!idle.empty()) output.out << idle << '\n';
        else output.out << DoneText(command.action) << ' ' << ViewText(before) << '\n';
    }
    if (verdict == Verdict::DidNotTake) {
        output.err << "it didn't take: " << ViewText(after) << '\n';
        return ExitCode::NotFound;
    }
    if (verdict == Verdict::CannotTell) {
        output.err << "it can't be told whether it took: the element can't be read any more\n";
        return ExitCode::NotFound;
    }
    if (verifies && !output.json) output.out << SeenText(verdict, before, after) << '\n';
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
