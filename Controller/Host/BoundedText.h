// Writes wide text into a room of fixed size: what doesn't fit is cut, and the end is always marked.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Zorvex::Host {

class BoundedText {
public:
    // `room` counts units with the end's mark; at least 1.
    BoundedText(wchar_t* out, std::size_t room) : m_out(out), m_left(room - 1) { *m_out = L'\0'; }

    BoundedText& Add(const wchar_t* text) {
        for (; *text; ++text) Put(*text);
        return *this;
    }
    // Each byte becomes one unit; messages of exceptions are ASCII.
    BoundedText& Add(const char* text) {
        for (; *text; ++text) Put(static_cast<unsigned char>(*text));
        return *this;
    }
    BoundedText& AddHex(std::uint64_t number, int digits, const wchar_t* alphabet = L"0123456789ABCDEF") {
        while (digits-- > 0) Put(alphabet[(number >> (4 * digits)) & 0xF]);
        return *this;
    }

    wchar_t* End() const { return m_out; }
    std::size_t Room() const { return m_left + 1; }

private:
    void Put(wchar_t unit) {
        if (m_left == 0) return;
        --m_left;
        *m_out++ = unit;
        *m_out = L'\0';
    }

    wchar_t* m_out;
    std::size_t m_left;
};

}  // namespace Zorvex::Host
