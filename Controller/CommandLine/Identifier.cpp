#include "Controller/CommandLine/Identifier.h"

#include <charconv>
#include <vector>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Output.h"

namespace Zorvex::Controller {

namespace {

std::optional<std::uint32_t> ReadNumber(std::string_view text) {
    const bool negative = !text.empty() && text[0] == '-';
    if (negative) text.remove_prefix(1);
    const bool hexadecimal = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    if (hexadecimal) text.remove_prefix(2);
    std::uint32_t number = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number, hexadecimal ? 16 : 10);
    if (text.empty() || problem != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return negative ? 0u - number : number;
}

}  // namespace

HWND HandleOf(std::uint32_t number) { return reinterpret_cast<HWND>(static_cast<INT_PTR>(static_cast<std::int32_t>(number))); }

std::string IdentifierText(const AAObjectIdentifier& identifier) {
    return HandleText(identifier.hWnd) + ":" + std::to_string(identifier.containerId) + ":" + std::to_string(identifier.childId) + ":" +
           std::to_string(identifier.isDomAria) + ":" + std::to_string(identifier.clientPid) + ":" + HandleText(identifier.originalWnd);
}

std::optional<AAObjectIdentifier> ReadIdentifier(std::wstring_view text) {
    const std::string narrow = NarrowText(text);
    std::vector<std::uint32_t> numbers;
    for (std::size_t start = 0; start <= narrow.size();) {
        const std::size_t end = std::min(narrow.find(':', start), narrow.size());
        const auto number = ReadNumber(std::string_view(narrow).substr(start, end - start));
        if (!number) return std::nullopt;
        numbers.push_back(*number);
        start = end + 1;
    }
    if (numbers.size() != AAObjectIdentifier::kNumberCount) return std::nullopt;
    return AAObjectIdentifier{HandleOf(numbers[0]), numbers[1], static_cast<std::int32_t>(numbers[2]),
                              numbers[3],           numbers[4], HandleOf(numbers[5])};
}

std::optional<HWND> ReadHandle(std::wstring_view text) {
    // A selector begins with a letter, so a number can be nothing else.
    if (text.empty() || text[0] < L'0' || text[0] > L'9') return std::nullopt;
    const auto number = ReadNumber(NarrowText(text));
    return number ? std::optional(HandleOf(*number)) : std::nullopt;
}

}  // namespace Zorvex::Controller
