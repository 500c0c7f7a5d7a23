// docs/wire-format.md against the code: its tables and its worked dumps.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "RuntimeCore/Requests/Catalogue.h"
#include "RuntimeCore/Selectors/Unified/ElementNotFoundError.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex {
namespace {

std::string Document() {
    std::ifstream file(VANTREL_SOURCE_DIR "/docs/wire-format.md", std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

// The bytes of every block that begins with ```hex NAME. In a line, what stands behind a semicolon is a remark.
std::map<std::string, RequestBuffer> Dumps() {
    std::map<std::string, RequestBuffer> dumps;
    RequestBuffer* open = nullptr;
    for (const std::string& line : Lines(Document())) {
        if (line.rfind("```hex ", 0) == 0) {
            open = &dumps[line.substr(7)];
        } else if (line.rfind("```", 0) == 0) {
            open = nullptr;
        } else if (open) {
            std::istringstream bytes(line.substr(0, line.find(';')));
            for (std::string byte; bytes >> byte;) open->push_back(static_cast<std::uint8_t>(std::stoul(byte, nullptr, 16)));
        }
    }
    return dumps;
}

HWND Window(INT_PTR handle) { return reinterpret_cast<HWND>(handle); }

AAObjectIdentifier OkButton() { return {Window(0x00010052), 1, 3, 0, 4242, Window(0x00010052)}; }

template <class Response>
RequestBuffer Encode(const Response& response) {
    Archive archive;
    WriteRecord(archive, response);
    return archive.TakeBuffer();
}

RequestBuffer SelectorRequest() {
    auto tag = std::make_shared<AaTag>();
    tag->SetAttribute(L"role", std::make_shared<StringValue>(L"push button"));
    tag->SetAttribute(L"name", std::make_shared<StringValue>(L"OK*", MatchingTypeNormal, 1.0, true, false));
    FindSelectorsRequest request;
    request.root = {Window(0x00010052), 0, 0, 0, 4242, Window(0x00010052)};
    request.selectors.resize(1);
    request.selectors[0].tags = {tag};
    request.selectors[0].options.maxResults = 1;
    request.timeoutMilliseconds = 5000;
    request.sequence = 100;
    return EncodeRequest(request);
}

RequestBuffer SelectorResponse(bool found) {
    FindSelectorsResponse response;
    response.success = true;
    response.results.resize(1);
    auto& result = response.results[0];
    result.limit = 1;
    if (found) {
        Search::AaCrossProcessSearchResult element;
        element.stats = ScoreStatistics();
        element.stats.Add(1.0);
        element.stats.Add(1.0);
        element.id = 103;
        element.parentId = 0;
        element.score = 1.0;
        element.identifier = OkButton();
        element.rectangle = {100, 70, 180, 100};
        result.results.push_back(element);
    } else {
        result.error = std::make_unique<Search::ElementNotFoundError>();
    }
    response.sequence = 104;
    return Encode(response);
}

std::map<std::string, RequestBuffer> ExpectedDumps() {
    return {
        {"empty", Archive().TakeBuffer()},
        {"FindElemFromPoint request", EncodeRequest(FindElemFromPointRequest{
             4242, Window(0x00010052), {120, 85}, FromPointBrowseHierarchy | FromPointHitTest, RelatedElementKind::None})},
        {"FindElemFromPoint response", Encode(FindElemFromPointResponse{
             false, OkButton(), CComVariant(43), Window(0x00010052), {100, 70, 180, 100}})},
        {"GetElemAttr request", EncodeRequest(GetElemAttrRequest{{OkButton(), L"name"}})},
        {"GetElemAttr response", Encode(AttributeResponse{S_OK, CComVariant(L"OK")})},
        {"GetElemAttr response to an unknown name", Encode(AttributeResponse{E_INVALIDARG, CComVariant()})},
        {"FindSelectors request", SelectorRequest()},
        {"FindSelectors response", SelectorResponse(true)},
        {"FindSelectors response, nothing found", SelectorResponse(false)},
    };
}

std::string Hex(const RequestBuffer& bytes) {
    std::ostringstream text;
    for (const std::uint8_t byte : bytes) text << std::hex << (byte >> 4) << (byte & 15) << ' ';
    return text.str();
}

TEST(WireFormatDocument, EveryDumpIsWhatTheCodeWrites) {
    const auto dumps = Dumps();
    const auto expected = ExpectedDumps();
    for (const auto& [name, bytes] : expected) {
        const auto found = dumps.find(name);
        if (found == dumps.end()) ADD_FAILURE() << "the document has no dump of: " << name << "\n" << Hex(bytes);
        else EXPECT_EQ(Hex(found->second), Hex(bytes)) << name;
    }
    for (const auto& [name, bytes] : dumps) EXPECT_EQ(expected.count(name), 1u) << "nobody checks the dump of: " << name;
}

// The form of a field as the document abbreviates it.
template <class T>
struct Form;
template <class T>
    requires(std::is_enum_v<T> || (std::is_integral_v<T> && sizeof(T) == 4))
struct Form<T> { static std::string Name() { return "i32"; } };
template <> struct Form<std::int64_t> { static std::string Name() { return "i64"; } };
template <> struct Form<bool> { static std::string Name() { return "byte"; } };
template <> struct Form<std::uint8_t> { static std::string Name() { return "byte"; } };
template <> struct Form<HWND> { static std::string Name() { return "wnd"; } };
template <> struct Form<POINT> { static std::string Name() { return "point"; } };
template <> struct Form<RECT> { static std::string Name() { return "rect"; } };
template <> struct Form<CString> { static std::string Name() { return "str"; } };
template <> struct Form<CComVariant> { static std::string Name() { return "var"; } };
template <> struct Form<AAObjectIdentifier> { static std::string Name() { return "id"; } };
template <> struct Form<HighlightInfo> { static std::string Name() { return "HighlightInfo"; } };
template <> struct Form<AncestryNode> { static std::string Name() { return "AncestryNode"; } };
template <> struct Form<AncestryInfoOptions> { static std::string Name() { return "AncestryInfoOptions"; } };
template <> struct Form<Search::SelectorEntry> { static std::string Name() { return "SelectorEntry"; } };
template <> struct Form<Search::CrossProcessSelectorResult> { static std::string Name() { return "SelectorResult"; } };
template <> struct Form<std::shared_ptr<StringValue>> { static std::string Name() { return "sp<StringValue>"; } };
template <class T>
struct Form<std::vector<T>> { static std::string Name() { return "vec<" + Form<T>::Name() + ">"; } };
template <class Key, class Value>
struct Form<std::map<Key, Value>> { static std::string Name() { return "map<" + Form<Key>::Name() + "," + Form<Value>::Name() + ">"; } };

template <class Record>
std::string FieldList() {
    std::string text;
    Record record;
    Record::Fields(record, [&]<class T>(const char* name, T&) {
        text += (text.empty() ? "" : "; ") + std::string("`") + Form<T>::Name() + "` " + name;
    });
    return text.empty() ? "none" : text;
}

TEST(WireFormatDocument, EveryRequestHasItsRow) {
    const auto lines = Lines(Document());
    for (std::uint32_t id = 0; id < kRequestCount; ++id) {
        WithRequestType(static_cast<RequestId>(id), [&]<class Request>() {
            const std::string name = std::string(ToText(Request::kRequestId)).substr(11);
            const std::string row = "| " + std::to_string(id) + " | `" + name + "` | " + FieldList<Request>() + " | " +
                                    FieldList<typename Request::Response>() + " |";
            EXPECT_EQ(std::count(lines.begin(), lines.end(), row), 1) << row;
        });
    }
}

TEST(WireFormatDocument, EverySharedRecordHasItsLine) {
    const std::string document = Document();
    EXPECT_NE(document.find("`HighlightInfo`: " + FieldList<HighlightInfo>() + "."), std::string::npos) << FieldList<HighlightInfo>();
    EXPECT_NE(document.find("`AncestryNode`: " + FieldList<AncestryNode>() + "."), std::string::npos) << FieldList<AncestryNode>();
    EXPECT_NE(document.find("`AncestryInfoOptions`: " + FieldList<AncestryInfoOptions>() + "."), std::string::npos)
        << FieldList<AncestryInfoOptions>();
    EXPECT_NE(document.find("`id`, an identifier of an element: " + FieldList<AAObjectIdentifier>() + "."), std::string::npos)
        << FieldList<AAObjectIdentifier>();
}

template <class Tag>
void ExpectTagRow(const std::vector<std::string>& lines, const char* name) {
    const Tag tag;
    std::string row = "| `" + std::string(name) + "` | " + std::to_string(tag.GetSerializationId()) + " | " +
                      std::to_string(static_cast<std::uint32_t>(tag.GetTagKind())) + " | ";
    std::string texts, numbers;
    for (const auto& [attribute, accessor] : tag.GetAttributeFactories()) {
        std::string& list = accessor->GetKind() == 0 ? texts : numbers;
        list += (list.empty() ? "`" : ", `") + std::string(attribute.begin(), attribute.end()) + "`";
    }
    row += (texts.empty() ? "none" : texts) + " | " + (numbers.empty() ? "none" : numbers) + " |";
    EXPECT_EQ(std::count(lines.begin(), lines.end(), row), 1) << row;
}

TEST(WireFormatDocument, EveryTagHasItsRow) {
    const auto lines = Lines(Document());
    ExpectTagRow<WndTag>(lines, "WndTag");
    ExpectTagRow<AaTag>(lines, "AaTag");
    ExpectTagRow<JavaTag>(lines, "JavaTag");
    ExpectTagRow<HtmlTag>(lines, "HtmlTag");
    ExpectTagRow<WebCtrlTag>(lines, "WebCtrlTag");
    ExpectTagRow<UiAutoTag>(lines, "UiAutoTag");
    ExpectTagRow<SLTag>(lines, "SLTag");
    ExpectTagRow<NavigationTag>(lines, "NavigationTag");
    ExpectTagRow<SAPTag>(lines, "SAPTag");
    ExpectTagRow<RdpTag>(lines, "RdpTag");
    ExpectTagRow<RdpAppTag>(lines, "RdpAppTag");
    ExpectTagRow<QtTag>(lines, "QtTag");
    ExpectTagRow<WpfTag>(lines, "WpfTag");
}

}  // namespace
}  // namespace Zorvex
