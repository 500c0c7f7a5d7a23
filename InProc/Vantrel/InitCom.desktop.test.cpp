#include "InProc/Vantrel/InitCom.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Simulated/System.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

// A thread of its own has not been initialised yet.
void OnNewThread(const std::function<void()>& work) { std::thread(work).join(); }

TEST(InitCom, FirstThreadBecomesASingleThreadedApartmentForGood) {
    LogCapture log;
    INIT_ONCE once{};
    OnNewThread([&] {
        InitCOM(once);
        EXPECT_EQ(Simulated::CoInitializeCalls().back().model, 2u);
        EXPECT_EQ(Simulated::ComInitializationDepth(), 1);
    });
    EXPECT_EQ(log.Lines(), std::vector<std::string>{"V [operator ()] InitCOM: CoInitializeEx succeeded."});
}

TEST(InitCom, CountOfAThreadThatWasInitialisedAlreadyIsGivenBack) {
    LogCapture log;
    INIT_ONCE once{};
    OnNewThread([&] {
        ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        InitCOM(once);
        EXPECT_EQ(Simulated::CoInitializeCalls().back().result, S_FALSE);
        EXPECT_EQ(Simulated::ComInitializationDepth(), 1);
        ::CoUninitialize();
    });
    EXPECT_TRUE(log.Contains("InitCOM: CoInitializeEx succeeded."));
}

TEST(InitCom, FailureIsLoggedAndNotTriedAgain) {
    LogCapture log;
    INIT_ONCE once{};
    const std::size_t before = Simulated::CoInitializeCalls().size();
    OnNewThread([&] {
        Simulated::FailNextCoInitialize(RPC_E_CHANGED_MODE);
        InitCOM(once);
        InitCOM(once);
        EXPECT_EQ(Simulated::ComInitializationDepth(), 0);
    });
    OnNewThread([&] { InitCOM(once); });
    EXPECT_EQ(Simulated::CoInitializeCalls().size(), before + 1);
    EXPECT_EQ(log.Lines(), std::vector<std::string>{"E [operator ()] InitCOM: CoInitializeEx failed, hRes=0x80010106"});
}

}  // namespace
}  // namespace Zorvex::Testing
