#include "RuntimeCore/RoleTexts.h"

#include <gtest/gtest.h>

#include "tests/Support/LogCapture.h"

namespace Zorvex::AAUtil {
namespace {

TEST(RoleTexts, AreTheFixedEnglishTableForRolesOneToSixtyFour) {
    const wchar_t* const expected[] = {
        L"title bar", L"menu bar", L"scroll bar", L"grip", L"sound", L"cursor", L"caret", L"alert", L"window",
        L"client", L"popup menu", L"menu item", L"tool tip", L"application", L"document", L"pane", L"chart",
        L"dialog", L"border", L"grouping", L"separator", L"tool bar", L"status bar", L"table", L"column header",
        L"row header", L"column", L"row", L"cell", L"link", L"help balloon", L"character", L"list", L"list item",
        L"outline", L"outline item", L"page tab", L"property page", L"indicator", L"graphic", L"text",
        L"editable text", L"push button", L"check box", L"radio button", L"combo box", L"drop down",
        L"progress bar", L"dial", L"hot key field", L"slider", L"spin box", L"diagram", L"animation", L"equation",
        L"drop down button", L"menu button", L"grid drop down button", L"white space", L"page tab list", L"clock",
        L"split button", L"IP address", L"outline button"};
    Testing::LogCapture log;
    LONG role = 0;
    for (const wchar_t* text : expected) EXPECT_EQ(GetRoleAsText(++role), text);
    EXPECT_EQ(role, 64);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(RoleTexts, RoleZeroIsAnInvalidParameterWithoutAText) {
    Testing::LogCapture log;
    EXPECT_EQ(GetRoleAsText(0), L"");
    EXPECT_TRUE(log.Contains("Invalid parameter"));
}

TEST(RoleTexts, RoleSixtyFiveTakesThePlatformsTextAndSaysSo) {
    Testing::LogCapture log;
    wchar_t platform[260] = {};
    ::GetRoleTextW(65, platform, 260);
    EXPECT_EQ(GetRoleAsText(65), platform);
    EXPECT_TRUE(log.Contains("65 exceeded 64 use GetRoleText")) << log.Text();
}

TEST(RoleTexts, ANegativeRoleIsBeyondTheTable) {
    Testing::LogCapture log;
    GetRoleAsText(-1);
    EXPECT_TRUE(log.Contains("-1 exceeded 64 use GetRoleText")) << log.Text();
}

}  // namespace
}  // namespace Zorvex::AAUtil
