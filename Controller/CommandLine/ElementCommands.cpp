// Commands about one element: at and attrs.
#include <ostream>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/Elements.h"
#include "Controller/CommandLine/Identifier.h"

namespace Zorvex::Controller {

namespace {

constexpr const wchar_t* kNativeNames[] = {L"accName",     L"accRole",   L"accState",   L"accValue",    L"accDescription",
                                           L"accHelp",     L"accKeyboardShortcut", L"accDefaultAction", L"accChildCount",
                                           L"accLocation", L"role",      L"states",     L"uniqueID",    L"attributes"};

// Prints or writes one attribute; what couldn't be read only with its result, as it tells something too.
void Show(Output& output, JsonWriter& json, const wchar_t* name, const AttributeResponse& answer) {
    if (output.json) {
        json.Key(NarrowText(name));
        if (FAILED(answer.result)) json.Null();
        else WriteVariant(json, answer.value);
        return;
    }
    std::string label = NarrowText(name);
    label.resize(std::max<std::size_t>(label.size(), 20), ' ');
    output.out << "  " << label << ' ';
    if (FAILED(answer.result)) output.out << "- (" << HandleText(reinterpret_cast<HWND>(static_cast<UINT_PTR>(static_cast<std::uint32_t>(answer.result)))) << ")\n";
    else output.out << VariantText(answer.value) << '\n';
}

void ShowAttributes(Session& session, const AAObjectIdentifier& element, bool native, Output& output, JsonWriter& json) {
    if (output.json) json.Key("attributes").BeginObject();
    for (const wchar_t* name : kAttributeNames) Show(output, json, name, session.Call(GetElemAttrRequest{{element, name}}));
    if (output.json) json.EndObject();
    if (!native) return;
    if (output.json) json.Key("native").BeginObject();
    for (const wchar_t* name : kNativeNames) Show(output, json, name, session.Call(GetNativeAttributeRequest{{element, name}}));
    if (output.json) json.EndObject();
}

}  // namespace

ExitCode RunAt(Session& session, const AtCommand& command, Output& output) {
    session.OpenAt(command.point);
    FindElemFromPointRequest request;
    request.clientPid = session.ClientNumber();
    request.window = session.Window().window;
    request.point = command.point;
    if (!command.hitTestOnly) request.flags |= FromPointBrowseHierarchy;
    if (!command.hierarchyOnly) request.flags |= FromPointHitTest;
    if (command.fromTopLevel) request.flags |= FromPointHitTestFromTopLevel;
    if (command.domMode) request.flags |= FromPointDomMode;
    if (command.relatedComboBox) request.relatedElement = RelatedElementKind::ClosestComboBox;
    const auto response = session.Call(request);
    const std::string point = std::to_string(command.point.x) + "," + std::to_string(command.point.y);
    if (response.element == AAObjectIdentifier{}) {
        const RECT& window = session.Window().rectangle;
        throw CommandFailure(ExitCode::NotFound, "there is no element at " + point +
                                                     (::PtInRect(&window, command.point) ? std::string()
                                                          : ": the window's rectangle is " + RectangleText(window)));
    }
    const ElementView view = ReadViews(session, {response.element}).front();
    JsonWriter json(output.out);
    if (output.json) {
        json.BeginObject();
        WriteView(json, view);
        json.Key("roleNumber");
        WriteVariant(json, response.role);
        json.Key("ownerWindow").Text(std::string_view(HandleText(response.ownerWindow)));
        json.Key("relatedElementUsed").Flag(response.relatedElementUsed);
    } else {
        output.out << ViewText(view) << "\n  " << IdentifierText(view.identifier) << "\n  owner window "
                   << HandleText(response.ownerWindow) << '\n';
        if (command.relatedComboBox) output.out << "  related element " << (response.relatedElementUsed ? "used" : "not found") << '\n';
    }
    ShowAttributes(session, response.element, false, output, json);
    if (output.json) json.EndObject().Finish();
    return ExitCode::Done;
}

ExitCode RunAttrs(Session& session, const AttrsCommand& command, Output& output) {
    const AAObjectIdentifier element = FindTarget(session, command.target);
    JsonWriter json(output.out);
    if (output.json) json.BeginObject().Key("identifier").Text(std::string_view(IdentifierText(element)));
    else output.out << IdentifierText(element) << '\n';
    ShowAttributes(session, element, command.native, output, json);
    if (output.json) json.EndObject().Finish();
    return ExitCode::Done;
}

}  // namespace Zorvex::Controller
