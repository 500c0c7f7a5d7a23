#include <ostream>
#include <sstream>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/Elements.h"
#include "Controller/CommandLine/ElementTree.h"

namespace Zorvex::Controller {

namespace {

constexpr std::size_t kDepth = 100, kMaximum = 5'000;

std::string Markup(std::wstring_view text) {
    std::string result;
    for (const char byte : NarrowText(text)) {
        switch (byte) {
            case '&': result += "&amp;"; break;
            case '<': result += "&lt;"; break;
            case '>': result += "&gt;"; break;
            case '"': result += "&quot;"; break;
            // Controls can't stand in the file, not even escaped.
            default: result += static_cast<unsigned char>(byte) < 0x20 ? ' ' : byte;
        }
    }
    return result;
}

class Drawing {
public:
    explicit Drawing(const RECT& area) : m_area(area) {
        m_out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << Width() << "\" height=\"" << Height() << "\" viewBox=\"0 0 "
              << Width() << ' ' << Height() << "\" font-family=\"sans-serif\" font-size=\"11\">\n"
              << " <rect width=\"100%\" height=\"100%\" fill=\"#f4f4f2\"/>\n";
    }

    void Element(const ElementView& view, bool leaf) {
        const RECT& place = view.rectangle;
        if (place.right <= place.left || place.bottom <= place.top) return;
        m_out << " <g><title>" << Markup(view.role) << ' ' << Markup(view.name) << "</title>" << Rectangle(place)
              << " fill=\"" << (leaf ? "#ffffff" : "none") << "\" stroke=\"#9aa0a6\"/>";
        if (leaf && !view.name.empty()) {
            // The part of the name that fits, at seven pixels a letter.
            const std::size_t room = static_cast<std::size_t>(std::max<std::int64_t>((Across(place.left, place.right) - 6) / 7, 0));
            std::wstring name = view.name.substr(0, room);
            if (!name.empty())
                m_out << "<text x=\"" << Across(m_area.left, place.left) + 3 << "\" y=\""
                      << Across(m_area.top, place.top) + Across(place.top, place.bottom) / 2 + 4
                      << "\" fill=\"#202124\">" << Markup(name) << "</text>";
        }
        m_out << "</g>\n";
    }

    void Outline(const RECT& place) {
        m_out << ' ' << Rectangle(place) << " fill=\"none\" stroke=\"#d93025\" stroke-width=\"3\"/>\n";
    }

    std::string Finish() {
        m_out << "</svg>\n";
        return m_out.str();
    }

private:
    // A target's places may lie further apart than a place's number reaches.
    static std::int64_t Across(LONG from, LONG to) { return static_cast<std::int64_t>(to) - from; }
    std::int64_t Width() const { return std::max<std::int64_t>(Across(m_area.left, m_area.right), 1); }
    std::int64_t Height() const { return std::max<std::int64_t>(Across(m_area.top, m_area.bottom), 1); }
    std::string Rectangle(const RECT& place) const {
        return "<rect x=\"" + std::to_string(Across(m_area.left, place.left)) + "\" y=\"" + std::to_string(Across(m_area.top, place.top)) +
               "\" width=\"" + std::to_string(Across(place.left, place.right)) + "\" height=\"" +
               std::to_string(Across(place.top, place.bottom)) + "\"";
    }

    RECT m_area;
    std::ostringstream m_out;
};

}  // namespace

ExitCode RunPicture(Session& session, const PictureCommand& command, Output& output) {
    session.Open();
    const ElementTree tree = ReadTree(session, kDepth, kMaximum);
    std::vector<AAObjectIdentifier> elements;
    for (const TreeNode& node : tree.nodes) elements.push_back(node.identifier);
    const auto views = ReadViews(session, elements);
    Drawing drawing(session.Window().rectangle);
    // Containers first, so that their children lie on top.
    for (std::size_t i = 0; i < views.size(); ++i) drawing.Element(views[i], tree.nodes[i].children.empty());
    if (!command.outline.text.empty())
        drawing.Outline(ReadViews(session, {FindTarget(session, command.outline)}).front().rectangle);
    const std::string picture = drawing.Finish();
    if (command.file == L"-") {
        output.out << picture;
        return ExitCode::Done;
    }
    WriteWholeFile(command.file, picture);
    if (output.json) JsonWriter(output.out).BeginObject().Key("file").Text(command.file).Key("elements").Number(static_cast<std::int64_t>(views.size())).EndObject().Finish();
    else output.out << NarrowText(command.file) << ": " << views.size() << " elements\n";
    return ExitCode::Done;
}

}  // namespace Zorvex::Controller
