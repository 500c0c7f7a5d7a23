// docs/client-library.md: its examples, compiled and run. The code between the marks is compared with the document.
#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <sstream>

#include "Controller/Client/Connection.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace {

// A server of three answers, standing where the library's export would.
void ExecuteAa(const Zorvex::RequestBuffer* request, Zorvex::RequestBuffer* response) {
    using namespace Zorvex;
    Archive reader(*request);
    std::uint32_t id = 0;
    reader.read(id);
    Archive writer;
    switch (static_cast<RequestId>(id)) {
        case RequestId::FindElemFromPoint: {
            const auto asked = ReadRecord<FindElemFromPointRequest>(reader);
            FindElemFromPointResponse answer;
            if (asked.point.x == 5) answer.element = {asked.window, 1, 2, 0, asked.clientPid, asked.window};
            WriteRecord(writer, answer);
            break;
        }
        case RequestId::GetElemAttr: WriteRecord(writer, AttributeResponse{S_OK, CComVariant(L"OK")}); break;
        case RequestId::FindSelectors: {
            const auto asked = ReadRecord<FindSelectorsRequest>(reader);
            FindSelectorsResponse answer;
            answer.success = true;
            answer.results.resize(asked.selectors.size());
            answer.results[0].results.resize(1);
            WriteRecord(writer, answer);
            break;
        }
        default: return;
    }
    *response = writer.TakeBuffer();
}

// BEGIN
// The name of the element under a point, and where it is found again. Empty when there is none.
std::wstring NameUnder(Zorvex::Client::Client& client, HWND window, POINT point) {
    using namespace Zorvex;

    FindElemFromPointRequest atPoint;
    atPoint.clientPid = 4242;
    atPoint.window = window;
    atPoint.point = point;
    atPoint.flags = FromPointBrowseHierarchy | FromPointHitTest;
    const auto found = client.Call(atPoint);
    if (!found) {
        std::cerr << found.Error().ToString() << '\n';  // "the target is gone: process 4711 ended"
        return {};
    }
    if (found->element == AAObjectIdentifier{}) return {};

    const auto name = client.Call(GetElemAttrRequest{{found->element, L"name"}});
    if (!name || FAILED(name->result) || name->value.vt != VT_BSTR) return {};

    // A selector of one tag: the elements of any name that begins with this one.
    auto tag = std::make_shared<AaTag>();
    tag->SetAttribute(L"name", std::make_shared<StringValue>(std::wstring(name->value.bstrVal) + L"*"));
    FindSelectorsRequest search;
    search.root = {window, 0, CHILDID_SELF, 0, 4242, window};  // the window itself
    search.selectors.resize(1);
    search.selectors[0].tags = {tag};
    search.timeoutMilliseconds = 5000;
    if (const auto again = client.Call(search); again && again->success && !again->results[0].results.empty())
        std::cerr << "found again at " << again->results[0].results[0].rectangle.left << '\n';

    // The server forgets what it kept for this client.
    client.Call(UnregisterAllContainersByClientPidRequest{4242, nullptr});
    return name->value.bstrVal;
}
// END

// BEGIN
class InThisProcess final : public Zorvex::Client::Transport {
public:
    std::optional<Zorvex::Client::Failure> Send(const Zorvex::RequestBuffer& request, Zorvex::RequestBuffer& response,
                                                std::chrono::milliseconds) override {
        try {
            ExecuteAa(&request, &response);
            return std::nullopt;
        } catch (const Zorvex::ArchiveException& exception) {
            return Zorvex::Client::Failure{Zorvex::Client::Problem::ServerException, exception.Text()};
        }
    }
};
// END

TEST(ClientLibraryDocument, ExampleFindsTheNameUnderAPoint) {
    InThisProcess transport;
    Zorvex::Client::Client client(transport);
    HWND window = reinterpret_cast<HWND>(static_cast<INT_PTR>(0x10052));
    EXPECT_EQ(NameUnder(client, window, {5, 5}), L"OK");
    EXPECT_EQ(NameUnder(client, window, {6, 5}), L"");
}

TEST(ClientLibraryDocument, CodeInTheDocumentIsTheCodeHere) {
    const auto contents = [](const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        std::string result = text.str();
        std::erase(result, '\r');
        return result;
    };
    const std::string document = contents(VANTREL_SOURCE_DIR "/docs/client-library.md");
    const std::string source = contents(VANTREL_SOURCE_DIR "/Controller/Client/ClientLibraryDocument.test.cpp");
    std::size_t blocks = 0;
    for (std::size_t begin = document.find("```cpp\n"); begin != std::string::npos; begin = document.find("```cpp\n", begin + 1)) {
        const std::size_t first = begin + 7;
        const std::string block = document.substr(first, document.find("```", first) - first);
        EXPECT_NE(source.find("// BEGIN\n" + block + "// END\n"), std::string::npos) << block;
        ++blocks;
    }
    EXPECT_EQ(blocks, 2u);
}

}  // namespace
