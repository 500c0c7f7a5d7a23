// A picture in memory, and as a PNG file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Windows.h"

namespace Zorvex::Controller {

struct Color {
    std::uint8_t red, green, blue;
};

class Bitmap {
public:
    // All of one color. Sizes below 1 count as 1; above 16,384 they are cut, as a target's places may be anywhere.
    Bitmap(std::int64_t width, std::int64_t height, Color background);

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    Color At(int x, int y) const;
    // What lies outside the picture isn't drawn.
    void Set(std::int64_t x, std::int64_t y, Color color);
    // Edges of the rectangle, `thickness` pixels wide, inside it. The picture's left upper corner is at `origin`.
    void Outline(const RECT& rectangle, POINT origin, Color color, int thickness);

    // The bytes of a PNG file. Throws std::bad_alloc.
    std::string EncodePng() const;

private:
    int m_width, m_height;
    std::vector<std::uint8_t> m_pixels;  // three a pixel, row by row
};

}  // namespace Zorvex::Controller
