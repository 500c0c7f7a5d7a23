// The request cases on the simulated desktop. With VANTREL_REWRITE_EXPECTED=1 in the environment their answers are
// written anew.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "Platform/Simulated/Desktop.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/requests/RequestCase.h"

namespace Zorvex::Testing {
namespace {

class InThisProcess final : public Client::Transport {
public:
    std::optional<Client::Failure> Send(const RequestBuffer& request, RequestBuffer& response, std::chrono::milliseconds) override {
        try {
            response = CallRaw(request);
            return std::nullopt;
        } catch (const std::exception& exception) {
            return Client::Failure{Client::Problem::ServerException, exception.what()};
        }
    }
};

class RequestCases : public ::testing::TestWithParam<std::string> {};

TEST_P(RequestCases, AnswersAreAsWritten) {
    RequestCase item = ReadRequestCase(GetParam());
    DesktopFixture desktop(item.Desktop());
    std::map<std::string, HWND> windows;
    for (const auto& window : desktop.Get().AllWindows())
        if (!window->made) windows[window->id] = window->hwnd;
    InThisProcess transport;
    Client::Client client(transport);
    const auto problems = item.Replay(client, windows);
    EXPECT_EQ(desktop.OutstandingReferences(), 0) << "the server keeps objects of a client that has said good-bye";
    if (std::getenv("VANTREL_REWRITE_EXPECTED")) {
        std::ofstream(RequestCasePath(GetParam()), std::ios::binary) << item.Rewritten();
        return;
    }
    for (const std::string& problem : problems) ADD_FAILURE() << problem;
    // A file that was typed is laid out as a rewritten one, so that a rewriting shows nothing but what changed.
    std::ifstream file(RequestCasePath(GetParam()), std::ios::binary);
    const std::string written{std::istreambuf_iterator<char>(file), {}};
    if (problems.empty()) {
        EXPECT_EQ(item.Rewritten(), written) << "VANTREL_REWRITE_EXPECTED=1 lays it out";
    }
}

INSTANTIATE_TEST_SUITE_P(Native, RequestCases, ::testing::ValuesIn(RequestCaseNames()),
                         [](const auto& info) { return info.param; });

}  // namespace
}  // namespace Zorvex::Testing
