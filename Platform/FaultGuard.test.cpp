#include "Platform/FaultGuard.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace Zorvex {
namespace {

void Fault() {
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
}

TEST(FaultGuard, CallThatReturnsIsSurvived) {
    int calls = 0;
    EXPECT_TRUE(SurvivesCall([&] { ++calls; }));
    EXPECT_EQ(calls, 1);
}

TEST(FaultGuard, ExceptionOfAnyTypeIsCaughtAfterTheDestructors) {
    bool destroyed = false;
    struct Owner {
        bool& destroyed;
        ~Owner() { destroyed = true; }
    };
    EXPECT_FALSE(SurvivesCall([&] {
        const Owner owner{destroyed};
        throw std::runtime_error("out");
    }));
    EXPECT_TRUE(destroyed);
    EXPECT_FALSE(SurvivesCall([] { throw 1; }));
}

TEST(FaultGuard, GuardsNest) {
    bool inner = true;
    EXPECT_TRUE(SurvivesCall([&] { inner = SurvivesCall([] { throw 1; }); }));
    EXPECT_FALSE(inner);
}

TEST(FaultGuard, HardwareFaultIsSurvivedAgainAndAgain) {
    if (!SurvivesHardwareFaults) GTEST_SKIP() << "the native build catches exceptions alone";
    for (int round = 0; round < 10; ++round) {
        volatile int reached = 0;
        EXPECT_FALSE(SurvivesCall([&] {
            reached = 1;
            Fault();
            reached = 2;
        }));
        EXPECT_EQ(reached, 1);
    }
    EXPECT_TRUE(SurvivesCall([] {})) << "and the next call is as any other";
}

TEST(FaultGuard, HardwareFaultIsReported) {
    if (!SurvivesHardwareFaults) GTEST_SKIP() << "the native build catches exceptions alone";
    FaultReport report;
    EXPECT_FALSE(CallGuarded([](void*) { Fault(); }, nullptr, report));
    EXPECT_EQ(report.code, 0xC0000005u);
    EXPECT_NE(report.address, 0u);
}

TEST(FaultGuard, HardwareFaultInsideACatchIsSurvived) {
    if (!SurvivesHardwareFaults) GTEST_SKIP() << "the native build catches exceptions alone";
    EXPECT_FALSE(SurvivesCall([] {
        try {
            throw 1;
        } catch (int) {
            Fault();
        }
    }));
    EXPECT_THROW(throw std::runtime_error("after"), std::runtime_error);
}

}  // namespace
}  // namespace Zorvex
