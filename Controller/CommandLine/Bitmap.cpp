#include "Controller/CommandLine/Bitmap.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#include <stb/stb_image_write.h>
#pragma GCC diagnostic pop

namespace Zorvex::Controller {

namespace {
constexpr std::int64_t kLargestSide = 16'384;
constexpr int kChannels = 3;
}  // namespace

Bitmap::Bitmap(std::int64_t width, std::int64_t height, Color background)
    : m_width(static_cast<int>(std::clamp<std::int64_t>(width, 1, kLargestSide))),
      m_height(static_cast<int>(std::clamp<std::int64_t>(height, 1, kLargestSide))),
      m_pixels(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height) * kChannels) {
    for (int y = 0; y < m_height; ++y)
        for (int x = 0; x < m_width; ++x) Set(x, y, background);
}

Color Bitmap::At(int x, int y) const {
    const std::uint8_t* pixel = &m_pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x)) * kChannels];
    return {pixel[0], pixel[1], pixel[2]};
}

void Bitmap::Set(std::int64_t x, std::int64_t y, Color color) {
    if (x < 0 || y < 0 || x >= m_width || y >= m_height) return;
    std::uint8_t* pixel = &m_pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x)) * kChannels];
    pixel[0] = color.red;
    pixel[1] = color.green;
    pixel[2] = color.blue;
}

void Bitmap::Outline(const RECT& rectangle, POINT origin, Color color, int thickness) {
    const std::int64_t left = std::int64_t{rectangle.left} - origin.x, right = std::int64_t{rectangle.right} - origin.x - 1;
    const std::int64_t top = std::int64_t{rectangle.top} - origin.y, bottom = std::int64_t{rectangle.bottom} - origin.y - 1;
    for (int i = 0; i < thickness; ++i) {
        // Only as far as the picture reaches, however far the rectangle does.
        for (std::int64_t x = std::max<std::int64_t>(left, 0); x <= std::min<std::int64_t>(right, m_width); ++x) {
            Set(x, top + i, color);
            Set(x, bottom - i, color);
        }
        for (std::int64_t y = std::max<std::int64_t>(top, 0); y <= std::min<std::int64_t>(bottom, m_height); ++y) {
            Set(left + i, y, color);
            Set(right - i, y, color);
        }
    }
}

std::string Bitmap::EncodePng() const {
    int size = 0;
    unsigned char* bytes = stbi_write_png_to_mem(m_pixels.data(), m_width * kChannels, m_width, m_height, kChannels, &size);
    if (!bytes) throw std::bad_alloc();
    std::string file(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    std::free(bytes);
    return file;
}

}  // namespace Zorvex::Controller
