#include "RuntimeCore/Selectors/Search/StateNames.h"

#include <gtest/gtest.h>

namespace Zorvex::Search {
namespace {

using States = std::set<CString>;

TEST(StateNames, AnEmptyTextHasNoStates) { EXPECT_EQ(ParseStates(L""), States()); }

TEST(StateNames, PartsAreTrimmedAndLowerCased) {
    EXPECT_EQ(ParseStates(L"focusable, Selected"), (States{L"focusable", L"selected"}));
    EXPECT_EQ(ParseStates(L" \t\u00a0Has Popup\r\n"), (States{L"has popup"}));
    EXPECT_EQ(ParseStates(L"\u00c9TAT"), (States{L"\u00e9tat"}));
}

TEST(StateNames, EmptyPartsAreDropped) {
    EXPECT_EQ(ParseStates(L",, ,a,\t,"), (States{L"a"}));
    EXPECT_EQ(ParseStates(L","), States());
}

TEST(StateNames, TheSameStateTwiceIsOneState) { EXPECT_EQ(ParseStates(L"mixed, mixed,MIXED"), (States{L"mixed"})); }

}  // namespace
}  // namespace Zorvex::Search
