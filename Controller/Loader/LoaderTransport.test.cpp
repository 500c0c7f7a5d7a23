#include "Controller/Loader/LoaderTransport.h"

#include <gtest/gtest.h>

#include <utility>

using namespace Zorvex;
using namespace Zorvex::Loader;

namespace {

class FakeTarget : public ITarget {
public:
    explicit FakeTarget(LoadResult<Answer> answer) : m_answer(std::move(answer)) {}

    LoadResult<Answer> Execute(std::span<const std::uint8_t> request, std::chrono::milliseconds timeout) override {
        lastRequest.assign(request.begin(), request.end());
        lastTimeout = timeout;
        return m_answer;
    }
    LoadResult<bool> ServerStays(std::chrono::milliseconds) override { return false; }
    std::optional<LoadFailure> Unload(std::chrono::milliseconds) override { return std::nullopt; }
    const LoaderOptions& Options() const override { return m_options; }
    void SetAfterRequest(AfterRequest) override {}

    std::vector<std::uint8_t> lastRequest;
    std::chrono::milliseconds lastTimeout{};

private:
    LoadResult<Answer> m_answer;
    LoaderOptions m_options;
};

std::optional<Client::Failure> SendTo(LoadResult<Answer> answer, RequestBuffer& response) {
    LoaderTransport transport(std::make_unique<FakeTarget>(std::move(answer)));
    return transport.Send(RequestBuffer{1, 2, 3}, response, std::chrono::milliseconds(5));
}

}  // namespace

TEST(LoaderTransport, CarriesRequestTimeoutAndResponse) {
    auto owned = std::make_unique<FakeTarget>(LoadResult<Answer>(Answer{{9, 8}, 4}));
    FakeTarget& target = *owned;
    LoaderTransport transport(std::move(owned));
    RequestBuffer response;
    EXPECT_FALSE(transport.Send(RequestBuffer{1, 2, 3}, response, std::chrono::milliseconds(5)));
    EXPECT_TRUE((response == RequestBuffer{9, 8}));
    EXPECT_EQ(target.lastRequest, (std::vector<std::uint8_t>{1, 2, 3}));
    EXPECT_EQ(target.lastTimeout.count(), 5);
}

TEST(LoaderTransport, ServerThatAnswersNothingIsNoFailureOfTheTransport) {
    RequestBuffer response;
    EXPECT_FALSE(SendTo(LoadFailure{LoadProblem::NoResponse, "text"}, response));
    EXPECT_TRUE(response.empty());
}

TEST(LoaderTransport, EveryProblemIsAWordOfTheClientAndNoneLosesItsText) {
    using Client::Problem;
    const std::pair<LoadProblem, Problem> expected[] = {
        {LoadProblem::NoSuchWindow, Problem::NoSuchTarget},       {LoadProblem::NoSuchProcess, Problem::NoSuchTarget},
        {LoadProblem::WrongBitness, Problem::WrongBitness},       {LoadProblem::AccessDenied, Problem::AccessDenied},
        {LoadProblem::TargetHung, Problem::TargetHung},           {LoadProblem::DeadlinePassed, Problem::TimedOut},
        {LoadProblem::TargetBusy, Problem::TimedOut},             {LoadProblem::TargetGone, Problem::TargetGone},
        {LoadProblem::LibraryNotFound, Problem::LoadFailed},      {LoadProblem::LibraryFailed, Problem::LoadFailed},
        {LoadProblem::HostNotLoaded, Problem::LoadFailed},        {LoadProblem::ServerException, Problem::ServerException},
        {LoadProblem::ServerFault, Problem::ServerException},     {LoadProblem::AnswerTooLarge, Problem::LoadFailed},
        {LoadProblem::LaunchFailed, Problem::LoadFailed},         {LoadProblem::NoWindowInTime, Problem::LoadFailed},
        {LoadProblem::Cancelled, Problem::TimedOut},              {LoadProblem::NotOnThisSystem, Problem::LoadFailed},
        {LoadProblem::Failed, Problem::LoadFailed},
    };
    for (const auto& [loader, client] : expected) {
        SCOPED_TRACE(ToText(loader));
        const Client::Failure failure = ToClientFailure({loader, "the reason"});
        EXPECT_EQ(failure.problem, client);
        EXPECT_NE(failure.detail.find("the reason"), std::string::npos);
    }
}

TEST(LoaderTransport, TheLoadersWordStandsInTheTextWhereTheClientsIsCoarser) {
    EXPECT_EQ(ToClientFailure({LoadProblem::LibraryNotFound, "x.dll"}).detail, "library not found: x.dll");
    EXPECT_EQ(ToClientFailure({LoadProblem::TargetHung, "why"}).detail, "why");
}

TEST(LoadProblem, EveryOneHasATextAndOtherNumbersHaveNone) {
    for (int number = 0; number <= static_cast<int>(LoadProblem::Failed); ++number) {
        EXPECT_STRNE(ToText(static_cast<LoadProblem>(number)), "") << number;
    }
    EXPECT_STREQ(ToText(static_cast<LoadProblem>(1000)), "");
    EXPECT_EQ((LoadFailure{LoadProblem::TargetHung, ""}.ToString()), "target hung");
}
