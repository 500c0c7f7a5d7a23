#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/Support/CommandRun.h"

namespace Zorvex::Controller {
namespace {

using Testing::CommandAnswer;
using Testing::RunCommand;

std::string Row(int cells) {
    std::string row = R"({"role": "row", "children": [)";
    for (int i = 0; i < cells; ++i) row += std::string(i ? "," : "") + R"({"role": "cell", "name": "x"})";
    return row + "]}";
}

TEST(TableCommand, ALongRowAmongManyShortOnesIsRefusedAsCommaSeparatedValues) {
    const std::string file = (std::filesystem::temp_directory_path() / "vantrel-ragged-table.json").string();
    constexpr int Long = 6'000;
    {
        std::ofstream out(file);
        out << R"({"format": "vantrel-desktop/1", "windows": [{"id": "w", "class": "Dialog", "rectangle": [0, 0, 100, 100],
            "objects": {"client": {"children": [{"role": "table", "name": "ragged", "children": [)"
            << Row(Long);
        for (int i = 0; i < Long; ++i) out << ',' << Row(1);
        out << "]}]}}}]}";
    }
    const auto table = [&file](std::vector<std::string> more) {
        more.insert(more.begin(), {"--desktop", file, "table", "ctrl[name=ragged]"});
        return RunCommand(more);
    };
    const CommandAnswer refused = table({"--csv"});
    EXPECT_EQ(refused.code, 3);
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.err, "the table would have too many empty fields; it can be read without --csv\n");
    EXPECT_EQ(table({}).code, 0);
    const CommandAnswer some = table({"--csv", "--max-rows", "2"});
    EXPECT_EQ(some.code, 0);
    EXPECT_NE(some.out.find("\r\nx,,,"), std::string::npos);
    std::filesystem::remove(file);
}

}  // namespace
}  // namespace Zorvex::Controller
