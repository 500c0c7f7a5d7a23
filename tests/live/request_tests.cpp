// The request cases on live windows: the answers must be those that tests/requests has, to the letter.
#include <gtest/gtest.h>

#include "Controller/Loader/Bitness.h"
#include "Controller/Loader/LoaderTransport.h"
#include "tests/live/LiveTarget.h"
#include "tests/live/ServedDesktop.h"
#include "tests/requests/RequestCase.h"

namespace Zorvex::Testing {
namespace {

class RequestCases : public ::testing::TestWithParam<std::string> {};

TEST_P(RequestCases, AnswersAreAsWritten) {
    RequestCase item = ReadRequestCase(GetParam());
    if (!item.NativeOnly().empty()) GTEST_SKIP() << item.NativeOnly();
    const ServedDesktop desktop(item.Desktop());
    Loader::LoaderOptions options;
    options.hostPath = LiveFolder() + Loader::HostLibraryName(Loader::OwnBitness());
    options.serverPath = LiveFolder() + L"vantrel_x64.dll";
    options.afterRequest = Loader::AfterRequest::Stay;
    auto target = Loader::CreateLoaderSystem()->Open(desktop.Front(), options);
    ASSERT_TRUE(target) << target.Error().ToString();
    Loader::LoaderTransport transport(std::move(*target));
    Client::Client client(transport);
    for (const std::string& problem : item.Replay(client, desktop.Windows())) ADD_FAILURE() << problem;
    EXPECT_FALSE(transport.Target().Unload(std::chrono::seconds(5)));
}

INSTANTIATE_TEST_SUITE_P(Live, RequestCases, ::testing::ValuesIn(RequestCaseNames()),
                         [](const auto& info) { return info.param; });

}  // namespace
}  // namespace Zorvex::Testing
