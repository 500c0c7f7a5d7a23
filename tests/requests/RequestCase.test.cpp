// What a replay compares, and what it takes for the same.
#include "tests/requests/RequestCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "RuntimeCore/Requests/Catalogue.h"

namespace Zorvex::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const HWND kWindow = reinterpret_cast<HWND>(static_cast<INT_PTR>(0x7777));

// Gives the elements of a list one after the other, whatever it is asked, and notes the bytes that it was asked with.
class Server final : public Client::Transport {
public:
    explicit Server(std::vector<std::uint32_t> containers) : m_containers(std::move(containers)) {}

    std::optional<Client::Failure> Send(const RequestBuffer& request, RequestBuffer& response, std::chrono::milliseconds) override {
        requests.emplace_back(request.data(), request.data() + request.size());
        if (m_next == m_containers.size()) return Client::Failure{Client::Problem::NoResponse, ""};
        Archive archive;
        WriteRecord(archive, IdentifierResponse{{kWindow, m_containers[m_next++], 0, 0, 4711, kWindow}});
        response = archive.TakeBuffer();
        return std::nullopt;
    }

    std::vector<std::vector<std::uint8_t>> requests;

private:
    std::vector<std::uint32_t> m_containers;
    std::size_t m_next = 0;
};

std::string Step(const std::string& answer, const std::string& fields = "{}") {
    return R"({"request": "GetSibling", "fields": )" + fields + R"(, "answer": )" + answer + "}";
}

std::string Container(const std::string& name) { return R"({"element": "@main:)" + name + R"(:0:0:4711:@main"})"; }

struct Replayed {
    std::vector<std::string> problems;
    std::string rewritten;
    std::vector<std::vector<std::uint8_t>> requests;
};

Replayed Replay(const std::vector<std::string>& steps, std::vector<std::uint32_t> containers) {
    std::string text;
    for (const std::string& step : steps) text += (text.empty() ? "" : ", ") + step;
    RequestCase item(R"({"desktop": {}, "steps": [)" + text + "]}", "");
    Server server(std::move(containers));
    Client::Client client(server);
    auto problems = item.Replay(client, {{"main", kWindow}});
    return {std::move(problems), item.Rewritten(), server.requests};
}

TEST(RequestCase, AContainerKeepsTheNameThatItsFirstAnswerGaveIt) {
    EXPECT_THAT(Replay({Step(Container("$ok")), Step(Container("$other")), Step(Container("$ok"))}, {17, 21, 17}).problems, IsEmpty());
}

TEST(RequestCase, OneNameForTwoContainersIsAProblem) {
    EXPECT_THAT(Replay({Step(Container("$ok")), Step(Container("$ok"))}, {17, 21}).problems, ElementsAre(HasSubstr("step 2, GetSibling")));
}

TEST(RequestCase, TwoNamesForOneContainerAreAProblem) {
    EXPECT_THAT(Replay({Step(Container("$ok")), Step(Container("$other"))}, {17, 17}).problems, ElementsAre(HasSubstr("@main:$ok:0:0")));
}

TEST(RequestCase, ANumberOfAContainerIsNeverExpected) {
    EXPECT_THAT(Replay({Step(Container("17"))}, {17}).problems, ElementsAre(HasSubstr("was expected to be \"@main:17:")));
}

TEST(RequestCase, NamesInARequestStandForWhatTheyWereGivenTo) {
    const auto named = Replay({Step(Container("$ok")), Step("null", R"({"element": "@main:$ok:3:0:4711:@main"})")}, {17});
    const auto plain = Replay({Step(Container("$ok")), Step("null", R"({"element": "0x7777:17:3:0:4711:0x7777"})")}, {17});
    ASSERT_GE(named.requests.size(), 2u);
    EXPECT_EQ(named.requests[1], plain.requests[1]);
    EXPECT_THAT(named.problems, IsEmpty());
}

TEST(RequestCase, ANameThatNoAnswerGaveIsTheCasesMistake) {
    EXPECT_THAT(Replay({Step("null", R"({"element": "@main:$ok:0:0:4711:@main"})")}, {}).problems, ElementsAre(HasSubstr("$ok")));
    EXPECT_THAT(Replay({Step("null", R"({"element": "@mian:5:0:0:4711:@main"})")}, {}).problems, ElementsAre(HasSubstr("no window @mian")));
}

TEST(RequestCase, WithoutAnAnswerNullIsExpected) {
    EXPECT_THAT(Replay({Step("null")}, {}).problems, IsEmpty());
    EXPECT_THAT(Replay({Step("null")}, {17}).problems, ElementsAre(HasSubstr("the answer was expected to be null")));
    EXPECT_THAT(Replay({R"({"request": "GetSibling"})"}, {17}).problems, ElementsAre(HasSubstr("no answer is written")));
}

TEST(RequestCase, AMistakeInARequestDoesNotHideTheNextOnes) {
    const auto replayed = Replay({R"({"request": "GetSiblings", "answer": null})", Step("null", R"({"elemnt": 1})"), Step(Container("$ok"))}, {17});
    EXPECT_THAT(replayed.problems, ElementsAre(HasSubstr("no such request"), HasSubstr("elemnt: there is no such field")));
}

TEST(RequestCase, RewrittenItFitsAndReadsBackAsTheSame) {
    const std::string text = Replay({Step(Container("$mine")), Step("7"), Step("{}")}, {17, 17, 21}).rewritten;
    RequestCase again(text, "");
    Server server({5, 5, 9});
    Client::Client client(server);
    EXPECT_THAT(again.Replay(client, {{"main", kWindow}}), IsEmpty()) << text;
    EXPECT_EQ(again.Rewritten(), text);
    EXPECT_THAT(text, HasSubstr("@main:$mine:0"));
}

TEST(RequestCase, EveryClientOfItsRequestsSaysGoodBye) {
    const auto requests = Replay({R"({"request": "GetFocusedElem", "fields": {"clientPid": 5}, "answer": null})"}, {}).requests;
    ASSERT_EQ(requests.size(), 3u);
    const auto bytes = [](std::uint32_t client) {
        const RequestBuffer buffer = EncodeRequest(UnregisterAllContainersByClientPidRequest{client, nullptr});
        return std::vector<std::uint8_t>(buffer.data(), buffer.data() + buffer.size());
    };
    EXPECT_EQ(requests[1], bytes(5));
    EXPECT_EQ(requests[2], bytes(4711));
}

}  // namespace
}  // namespace Zorvex::Testing
