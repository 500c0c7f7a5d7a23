// BSTR: the length in bytes of the Windows kind, then the code units, then a NUL that isn't counted.
#include <cstdlib>
#include <cstring>

#include "Platform/Simulated/Sdk/Automation.h"
#include "Platform/Simulated/Sdk/SystemState.h"

namespace {
// The length stands right before the text, as on Windows; the rest of the header keeps malloc's alignment.
constexpr std::size_t HeaderSize = 16;
constexpr std::size_t LengthSize = sizeof(std::uint32_t);
constexpr UINT BytesPerUnit = 2;
}  // namespace

using namespace Simulated;

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    if (AllocationFails(Allocation::String) || length > LargestBlock / sizeof(OLECHAR)) return nullptr;
    auto* header = static_cast<char*>(std::malloc(HeaderSize + (std::size_t{length} + 1) * sizeof(OLECHAR)));
    if (!header) return nullptr;
    const std::uint32_t bytes = length * BytesPerUnit;
    std::memcpy(header + HeaderSize - LengthSize, &bytes, LengthSize);
    BSTR result = reinterpret_cast<BSTR>(header + HeaderSize);
    // Without a text the contents are open; zeroes keep what a caller forgets to fill the same in every run.
    if (text) std::memcpy(result, text, length * sizeof(OLECHAR));
    else std::memset(result, 0, length * sizeof(OLECHAR));
    result[length] = 0;
    CountBlock(Allocation::String, 1);
    return result;
}

BSTR SysAllocString(const OLECHAR* text) {
    if (!text) return nullptr;
    UINT length = 0;
    while (text[length]) ++length;
    return SysAllocStringLen(text, length);
}

void SysFreeString(BSTR text) {
    if (!text) return;
    CountBlock(Allocation::String, -1);
    std::free(reinterpret_cast<char*>(text) - HeaderSize);
}

UINT SysStringLen(BSTR text) {
    if (!text) return 0;
    std::uint32_t bytes = 0;
    std::memcpy(&bytes, reinterpret_cast<const char*>(text) - LengthSize, LengthSize);
    return bytes / BytesPerUnit;
}
