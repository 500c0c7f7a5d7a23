#include "Controller/CommandLine/Bitmap.h"

#include <gtest/gtest.h>

#include <limits>

namespace Zorvex::Controller {
namespace {

constexpr Color kWhite{255, 255, 255}, kRed{255, 0, 0};

bool IsRed(const Bitmap& picture, int x, int y) { return picture.At(x, y).green == 0; }

TEST(Bitmap, OutlineIsDrawnInsideItsRectangle) {
    Bitmap picture(10, 8, kWhite);
    picture.Outline({102, 201, 108, 206}, {100, 200}, kRed, 1);
    std::string drawn;
    for (int y = 0; y < 8; ++y, drawn += '\n')
        for (int x = 0; x < 10; ++x) drawn += IsRed(picture, x, y) ? '#' : '.';
    EXPECT_EQ(drawn,
              "..........\n"
              "..######..\n"
              "..#....#..\n"
              "..#....#..\n"
              "..#....#..\n"
              "..######..\n"
              "..........\n"
              "..........\n");
}

TEST(Bitmap, WhatLiesOutsideIsNotDrawnHoweverFarAwayItIs) {
    Bitmap picture(4, 4, kWhite);
    constexpr LONG least = std::numeric_limits<LONG>::min(), most = std::numeric_limits<LONG>::max();
    picture.Outline({least, least, most, most}, {0, 0}, kRed, 3);
    picture.Outline({least, 1, most, 2}, {0, 0}, kRed, 1);
    EXPECT_FALSE(IsRed(picture, 0, 0));
    EXPECT_TRUE(IsRed(picture, 0, 1));
    EXPECT_TRUE(IsRed(picture, 3, 1));
    picture.Outline({3, 3, 1, 1}, {0, 0}, kRed, 1);
    EXPECT_FALSE(IsRed(picture, 2, 2));
}

TEST(Bitmap, SizesAreBounded) {
    EXPECT_EQ(Bitmap(0, -5, kWhite).Width(), 1);
    EXPECT_EQ(Bitmap(0, -5, kWhite).Height(), 1);
    EXPECT_EQ(Bitmap(std::int64_t{1} << 40, 1, kWhite).Width(), 16'384);
}

TEST(Bitmap, FileIsAPngOfItsSize) {
    const std::string file = Bitmap(300, 2, kRed).EncodePng();
    EXPECT_EQ(file.substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(file.substr(12, 4), "IHDR");
    EXPECT_EQ(file.substr(16, 8), std::string("\0\0\1\x2c\0\0\0\2", 8));
    EXPECT_EQ(file.substr(file.size() - 8, 4), "IEND");
}

}  // namespace
}  // namespace Zorvex::Controller
