#include "Common/UTILITY/ModuleHandle.h"

#include <gtest/gtest.h>

#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr DWORD kProcessDetach = 0, kProcessAttach = 1, kThreadAttach = 2, kThreadDetach = 3;

class ModuleHandleTest : public testing::Test {
protected:
    ~ModuleHandleTest() override { OnDllMain(before, kProcessAttach, nullptr); }

    const HINSTANCE before = ModuleHandle();
    const HINSTANCE mine = reinterpret_cast<HINSTANCE>(INT_PTR{0x10000});
    LogCapture log;
};

TEST_F(ModuleHandleTest, AttachingKeepsTheHandleWithoutALine) {
    EXPECT_EQ(OnDllMain(mine, kProcessAttach, nullptr), TRUE);
    EXPECT_EQ(ModuleHandle(), mine);
    EXPECT_TRUE(log.Lines().empty());
}

TEST_F(ModuleHandleTest, StaticLinkingIsComplainedAboutAndAllowed) {
    int reserved = 0;
    EXPECT_EQ(OnDllMain(mine, kProcessAttach, &reserved), TRUE);
    EXPECT_EQ(ModuleHandle(), mine);
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines()[0].front(), 'E');
    EXPECT_TRUE(log.Contains("This should be called only from LoadLibrary, no static linking!"));
}

TEST_F(ModuleHandleTest, OtherReasonsDoNothing) {
    int reserved = 0;
    for (const DWORD reason : {kProcessDetach, kThreadAttach, kThreadDetach}) {
        EXPECT_EQ(OnDllMain(mine, reason, &reserved), TRUE);
        EXPECT_EQ(ModuleHandle(), before);
    }
    EXPECT_TRUE(log.Lines().empty());
}

}  // namespace
}  // namespace Zorvex::Testing
