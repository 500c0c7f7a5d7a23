// The command text: what a window or an element shows, with the place of each line.
#include <algorithm>
#include <ostream>

#include "Common/UTILITY/WindowKinds.h"
#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Bitmap.h"
#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/Elements.h"
#include "Controller/CommandLine/ElementTree.h"

namespace Zorvex::Controller {

namespace {

constexpr Color kPaper{0xf4, 0xf4, 0xf2}, kElement{0x9a, 0xa0, 0xa6}, kLine{0xd9, 0x30, 0x25};
constexpr std::size_t kDrawnElements = 5'000, kDrawnDepth = 100;

std::uint32_t FlagsOf(const TextCommand& command) {
    std::uint32_t flags = 0;
    if (command.rectangle) flags |= command.exact ? CaptureByExactRectangle : CaptureClipped;
    if (command.lines || !command.picture.empty()) flags |= CaptureHighlightInfo;
    if (command.leaveOutHidden) flags |= CaptureIgnoreHidden;
    if (command.leaveOutOffscreen) flags |= CaptureIgnoreOffscreen;
    return flags;
}

CaptureResponse Capture(Session& session, const TextCommand& command) {
    if (!command.target.text.empty()) {
        const AAObjectIdentifier element = FindTarget(session, command.target);
        return session.Call(GetFullTextRequest{element, FlagsOf(command)});
    }
    session.Open();
    ScrapeRequest request;
    request.window = session.Window().window;
    request.windowKind = command.kind ? *command.kind : static_cast<std::uint32_t>(GetAASpecialType(request.window));
    request.rectangle = command.rectangle.value_or(RECT{});
    request.flags = FlagsOf(command);
    return session.Call(request);
}

// The window as it can be seen; where that isn't to be had, the outlines of its elements.
Bitmap PictureOfWindow(Session& session) {
    const Loader::WindowInfo& window = session.Window();
    if (auto picture = TakePicture(window.window)) return std::move(*picture);
    const RECT& area = window.rectangle;
    Bitmap picture(std::int64_t{area.right} - area.left, std::int64_t{area.bottom} - area.top, kPaper);
    std::vector<AAObjectIdentifier> elements;
    for (const TreeNode& node : ReadTree(session, kDrawnDepth, kDrawnElements).nodes) elements.push_back(node.identifier);
    for (const ElementView& view : ReadViews(session, elements)) picture.Outline(view.rectangle, {area.left, area.top}, kElement, 1);
    return picture;
}

void DrawLines(Session& session, const CaptureResponse& response, const std::wstring& file) {
    Bitmap picture = PictureOfWindow(session);
    const RECT& area = session.Window().rectangle;
    for (const HighlightInfo& line : response.lines) picture.Outline(line.rectangle, {area.left, area.top}, kLine, 2);
    WriteWholeFile(file, picture.EncodePng());
}

void WriteJson(const CaptureResponse& response, const TextCommand& command, std::ostream& out) {
    JsonWriter json(out);
    json.BeginObject().Key("success").Flag(response.success).Key("text").Text(response.text);
    if (command.lines) {
        json.Key("lines").BeginArray();
        for (const HighlightInfo& line : response.lines) {
            json.BeginObject().Key("text").Text(line.text);
            json.Key("rectangle").Rectangle(line.rectangle).EndObject();
        }
        json.EndArray();
    }
    json.EndObject().Finish();
}

void Print(const CaptureResponse& response, const TextCommand& command, std::ostream& out) {
    if (command.lines && !response.lines.empty()) {
        for (const HighlightInfo& line : response.lines) out << RectangleText(line.rectangle) << "  " << QuotedText(line.text) << '\n';
        return;
    }
    std::string text = NarrowText(response.text);
    std::erase(text, '\r');
    out << text;
    if (!text.empty() && text.back() != '\n') out << '\n';
}

}  // namespace

ExitCode RunText(Session& session, const TextCommand& command, Output& output) {
    if (command.rectangle && !command.target.text.empty())
        throw CommandFailure(ExitCode::WrongArguments, "a rectangle filters the text of a window: leave the TARGET out, and choose the window by an option");
    const CaptureResponse response = Capture(session, command);
    if (!command.picture.empty()) DrawLines(session, response, command.picture);
    if (output.json) WriteJson(response, command, output.out);
    else Print(response, command, output.out);
    if (response.lines.empty() && !response.text.empty() && (command.lines || !command.picture.empty()))
        output.err << "the text of this window comes without places\n";
    if (response.success) return ExitCode::Done;
    output.err << "the server couldn't read the text" << (response.text.empty() ? "" : ", or not all of it") << '\n';
    return ExitCode::NotFound;
}

}  // namespace Zorvex::Controller
