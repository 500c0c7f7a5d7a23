#include "Controller/Client/Connection.h"

#include <gtest/gtest.h>

#include "tests/Support/ArchiveBytes.h"

namespace Zorvex::Client {
namespace {

// Answers with what it was told to, and remembers what it was asked.
class FakeTransport final : public Transport {
public:
    std::optional<Failure> Send(const RequestBuffer& request, RequestBuffer& response, std::chrono::milliseconds timeout) override {
        asked = request;
        waited = timeout;
        wasEmpty = response.empty();
        response = answer;
        return failure;
    }

    RequestBuffer asked;
    RequestBuffer answer;
    std::optional<Failure> failure;
    std::chrono::milliseconds waited{0};
    bool wasEmpty = false;
};

template <class Record>
RequestBuffer Encoded(const Record& record) {
    Archive archive;
    WriteRecord(archive, record);
    return archive.TakeBuffer();
}

TEST(Client, SendsTheRequestAndReadsItsResponse) {
    FakeTransport transport;
    transport.answer = Encoded(AnswerResponse{true});
    Client client(transport, std::chrono::milliseconds(700));
    const auto outcome = client.Call(IsListViewItemRequest{{AAObjectIdentifier{nullptr, 5, 6, 0, 7, nullptr}}});
    ASSERT_TRUE(outcome);
    EXPECT_TRUE(outcome->answer);
    EXPECT_EQ(transport.waited.count(), 700);
    EXPECT_TRUE(transport.wasEmpty);
    Archive reader(transport.asked);
    std::uint32_t id = 0;
    reader.read(id);
    EXPECT_EQ(id, 32u);
    EXPECT_EQ(ReadRecord<IsListViewItemRequest>(reader).element.childId, 6);
}

TEST(Client, EveryRequestOfTheCatalogueCanBeCalled) {
    for (std::uint32_t id = 0; id < kRequestCount; ++id) {
        WithRequestType(static_cast<RequestId>(id), [&]<class Request>() {
            FakeTransport transport;
            if constexpr (!std::is_same_v<typename Request::Response, NoResponse>)
                transport.answer = Encoded(typename Request::Response());
            Client client(transport);
            EXPECT_TRUE(client.Call(Request())) << ToText(Request::kRequestId);
        });
    }
}

TEST(Client, HandsTheTransportsFailureOn) {
    FakeTransport transport;
    transport.failure = Failure{Problem::TargetGone, "process 4711 ended"};
    Client client(transport);
    const auto outcome = client.Call(SetFocusRequest{});
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.Error().problem, Problem::TargetGone);
    EXPECT_EQ(outcome.Error().ToString(), "the target is gone: process 4711 ended");
}

TEST(Client, AnEmptyAnswerIsNoResponseSaveForTheRequestThatHasNone) {
    FakeTransport transport;
    Client client(transport);
    EXPECT_EQ(client.Call(SetFocusRequest{}).Error().problem, Problem::NoResponse);
    EXPECT_TRUE(client.Call(UnregisterAllContainersByClientPidRequest{1, nullptr}));
}

TEST(Client, AnswersThatDontReadAreMalformed) {
    FakeTransport transport;
    Client client(transport);
    transport.answer = RequestBuffer{9, 9};
    auto outcome = client.Call(SetFocusRequest{});
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.Error().problem, Problem::MalformedResponse);
    EXPECT_EQ(outcome.Error().detail, "Invalid vBuffer in ctor");
    transport.answer = Testing::BufferOf({});
    EXPECT_EQ(client.Call(SetFocusRequest{}).Error().detail, "readBytes: out-of-bounds access");
}

TEST(Client, RawCallsGiveTheBytes) {
    FakeTransport transport;
    transport.answer = Encoded(SuccessResponse{true});
    Client client(transport);
    RequestBuffer response{1, 2, 3};
    EXPECT_FALSE(client.CallRaw(EncodeRequest(SetFocusRequest{}), response));
    EXPECT_EQ(response, transport.answer);
    EXPECT_TRUE(transport.wasEmpty);
}

TEST(Client, EveryProblemHasAText) {
    for (int i = 0; i <= static_cast<int>(Problem::MalformedResponse); ++i) EXPECT_STRNE(ToText(static_cast<Problem>(i)), "");
    EXPECT_STREQ(ToText(static_cast<Problem>(99)), "");
    EXPECT_EQ((Failure{Problem::TimedOut, ""}).ToString(), "the server did not answer in time");
}

}  // namespace
}  // namespace Zorvex::Client
