// Trees of all shapes, through the command line: deep, endless, ringed, and servers that refuse to answer.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "tests/Support/CommandRun.h"

namespace Zorvex::Controller {
namespace {

using Testing::CommandAnswer;

// A desktop file of one window for the length of a test.
class DesktopTree : public ::testing::Test {
protected:
    DesktopTree() {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        m_path = std::filesystem::temp_directory_path() / ("vantrel-" + std::string(info->name()) + ".json");
    }
    ~DesktopTree() override { std::filesystem::remove(m_path); }

    CommandAnswer Ctl(const std::string& client, std::vector<std::string> arguments, const std::string& rest = "") {
        std::ofstream(m_path) << R"({"windows": [{"class": "C", "title": "T", "rectangle": [0,0,100,100], "objects": {"client": )" << client << "}}]"
                              << rest << "}";
        arguments.insert(arguments.begin(), {"--desktop", m_path.string()});
        return Testing::RunCommand(arguments);
    }

    static std::string Nested(int depth) {
        std::string text;
        for (int i = 1; i <= depth; ++i) text += R"({"role": "grouping", "name": "level )" + std::to_string(i) + R"(", "children": [)";
        for (int i = 1; i <= depth; ++i) text += "]}";
        return text;
    }

    static std::ptrdiff_t Lines(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }

    std::filesystem::path m_path;
};

TEST_F(DesktopTree, DeeperThanOneRequestReadsIsWhole) {
    for (const int depth : {14, 15, 16, 17, 31, 32, 33, 70}) {
        const CommandAnswer answer = Ctl(Nested(depth), {"tree"});
        EXPECT_EQ(answer.code, 0);
        EXPECT_EQ(Lines(answer.out), depth + 1);
        EXPECT_NE(answer.out.find(std::string(2 * static_cast<std::size_t>(depth), ' ') + "grouping \"level " + std::to_string(depth) + "\""),
                  std::string::npos);
    }
}

TEST_F(DesktopTree, DepthLimitsTheLevelsBelowTheWindow) {
    for (const int depth : {1, 15, 16, 17, 20})
        EXPECT_EQ(Lines(Ctl(Nested(40), {"tree", "--depth", std::to_string(depth)}).out), depth + 1);
}

TEST_F(DesktopTree, EndlessTreeEndsAtTheLimits) {
    const std::string endless = R"({"role": "grouping", "endless": true})";
    EXPECT_EQ(Lines(Ctl(endless, {"tree", "--depth", "50"}).out), 51);
    const CommandAnswer cut = Ctl(endless, {"tree", "--depth", "1000", "--max", "40"});
    EXPECT_EQ(Lines(cut.out), 40);
    EXPECT_NE(cut.err.find("the tree is cut at 40 elements"), std::string::npos);
}

TEST_F(DesktopTree, RingEndsAtTheDepth) {
    const std::string ring = R"({"id": "top", "role": "grouping", "children": [{"element": "top"}]})";
    EXPECT_EQ(Lines(Ctl(ring, {"tree", "--depth", "30"}).out), 31);
}

TEST_F(DesktopTree, ElementsThatRefuseEverythingAreStillShown) {
    const std::string client = R"({"role": "client", "children": [{"name": "a", "faults": [{"result": "0x80004005"}]}, {"role": "link", "name": "b"}]})";
    const CommandAnswer answer = Ctl(client, {"tree"});
    EXPECT_EQ(answer.code, 0);
    EXPECT_NE(answer.out.find("link \"b\""), std::string::npos);
}

TEST_F(DesktopTree, NthCallThatFailsNeverEndsTheCommandBadly) {
    const std::string client = R"({"role": "list", "children": [{"role": "list item", "name": "a", "simple": true}, {"role": "link", "name": "b"}]})";
    for (const char* fault : {R"("result": "0x80004005")", R"("null": true)", R"("throw": true)", R"("count": -1)", R"("type": "VT_R8")"})
        for (int at = 1; at <= 60; at += 3) {
            const std::string rest = R"(, "faults": [{"at": )" + std::to_string(at) + R"(, "times": 1, )" + fault + "}]";
            for (const std::vector<std::string>& command :
                 {std::vector<std::string>{"tree"}, {"at", "5", "5"}, {"attrs", "--native", "ctrl[name=b]"}, {"find", "ctrl[name=c]"}, {"record", "-"}}) {
                const CommandAnswer answer = Ctl(client, command, rest);
                EXPECT_TRUE(answer.code == 0 || answer.code == 1 || answer.code == 3) << answer.code << ' ' << answer.err;
            }
        }
}

TEST_F(DesktopTree, ControlsInNamesDontBreakLinesOrPictures) {
    const std::string client = R"({"role": "list", "children": [{"role": "link", "name": "a\u0001<b>&\"", "rectangle": [1,1,90,20]}]})";
    EXPECT_EQ(Lines(Ctl(client, {"tree"}).out), 3);
    const std::string picture = Ctl(client, {"picture", "-"}).out;
    EXPECT_EQ(picture.find('\x01'), std::string::npos);
    EXPECT_NE(picture.find("&lt;b&gt;&amp;&quot;"), std::string::npos);
}

}  // namespace
}  // namespace Zorvex::Controller
