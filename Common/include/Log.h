// Logging. A line that isn't wanted costs a comparison or two; see docs/logging.md for where lines go.
//
//   LogError("IsDescendantOfWnd: AccessibleObjectFromWindow failed");
//   if (ShouldLog(Severity::Verbose)) LogStream(Severity::Verbose) << "reqType = " << ToText(id);
//   return CallFailed("pAA->accLocation(&x, &y, &cx, &cy, varChild)", result, "AA Object accLocation failed");
#pragma once

#include <sstream>
#include <string_view>
#include <type_traits>

#include "Common/include/FormatText.h"

namespace Zorvex {

enum class Severity : int { Verbose = -1, Info = 0, Warning = 1, Error = 2, Fatal = 3 };

// Where a line comes from. All pointers are to literals.
struct SourceLocation {
    const char* file = "";
    const char* function = "";
    unsigned line = 0;
    Severity severity = Severity::Info;
};

// A format that notes where it was written, so that a plain call carries its own location.
template <class Character>
struct LocatedFormat {
    const Character* text;
    SourceLocation where;

    constexpr LocatedFormat(const Character* format, const char* file = __builtin_FILE(),
                            const char* function = __builtin_FUNCTION(), unsigned line = __builtin_LINE())
        : text(format), where{file, function, line, Severity::Info} {}
};

// True if a line of this severity would go anywhere.
bool ShouldLog(Severity severity);

// Formats in a buffer of 4,095 characters, where a longer message is cut without a word, and emits.
void LogFormatted(const SourceLocation& where, std::string_view format, std::span<const FormatArgument> arguments);
void LogFormatted(const SourceLocation& where, std::wstring_view format, std::span<const FormatArgument> arguments);

template <class Character, class... Arguments>
void LogAt(Severity severity, LocatedFormat<Character> format, const Arguments&... arguments) {
    if (!ShouldLog(severity)) return;
    format.where.severity = severity;
    const FormatArgument list[] = {FormatArgument(0), FormatArgument(arguments)...};
    LogFormatted(format.where, std::basic_string_view<Character>(format.text), std::span(list).subspan(1));
}

template <class... Arguments>
void LogVerbose(LocatedFormat<char> format, const Arguments&... arguments) { LogAt(Severity::Verbose, format, arguments...); }
template <class... Arguments>
void LogInfo(LocatedFormat<char> format, const Arguments&... arguments) { LogAt(Severity::Info, format, arguments...); }
template <class... Arguments>
void LogWarning(LocatedFormat<char> format, const Arguments&... arguments) { LogAt(Severity::Warning, format, arguments...); }
template <class... Arguments>
void LogError(LocatedFormat<char> format, const Arguments&... arguments) { LogAt(Severity::Error, format, arguments...); }
// The wide forms format in UTF-16.
template <class... Arguments>
void LogVerbose(LocatedFormat<wchar_t> format, const Arguments&... arguments) { LogAt(Severity::Verbose, format, arguments...); }
template <class... Arguments>
void LogInfo(LocatedFormat<wchar_t> format, const Arguments&... arguments) { LogAt(Severity::Info, format, arguments...); }
template <class... Arguments>
void LogWarning(LocatedFormat<wchar_t> format, const Arguments&... arguments) { LogAt(Severity::Warning, format, arguments...); }
template <class... Arguments>
void LogError(LocatedFormat<wchar_t> format, const Arguments&... arguments) { LogAt(Severity::Error, format, arguments...); }

// The stream-like shape: collects one line and emits it when it goes. Test ShouldLog first.
class LogStream {
public:
    explicit LogStream(Severity severity, const char* file = __builtin_FILE(), const char* function = __builtin_FUNCTION(),
                       unsigned line = __builtin_LINE());
    // Function may be null: the line then carries none. Line 0 leaves the place open.
    LogStream(const char* file, const char* function, unsigned line, Severity severity);
    LogStream(const LogStream&) = delete;
    LogStream& operator=(const LogStream&) = delete;
    ~LogStream();

    // Wide text, BSTRs among it, goes in as UTF-8; a null pointer to it as "(null)".
    template <class T>
    LogStream& operator<<(const T& value) {
        if constexpr (std::is_convertible_v<const T&, const wchar_t*>) {
            const wchar_t* text = value;
            AddWide(text ? std::wstring_view(text) : std::wstring_view(L"(null)"));
        } else if constexpr (std::is_convertible_v<const T&, std::wstring_view>) {
            AddWide(value);
        } else {
            m_stream << value;
        }
        return *this;
    }
    LogStream& operator<<(std::ios_base& (*manipulator)(std::ios_base&)) {
        m_stream << manipulator;
        return *this;
    }

private:
    void AddWide(std::wstring_view text);

    const char* m_file;
    Severity m_severity;
    unsigned m_line;
    std::size_t m_messageOffset = 0;
    std::ostringstream m_stream;
};

// The three shapes of an error, each logged at error severity. `condition` and `call` are the source text of the
// expression: an error in the field is traced to its line by them.

// Emits prefix, expression, result, " | " and message as one line at error severity.
void LogErrorShape(const LocatedFormat<char>& expression, std::string_view prefix, std::string_view result, std::string_view message);

// "Expectation not met: condition | message". Answers E_FAIL.
template <class... Arguments>
HRESULT ExpectationNotMet(LocatedFormat<char> condition, std::string_view message, const Arguments&... arguments) {
    if (ShouldLog(Severity::Error)) LogErrorShape(condition, "Expectation not met: ", "", FormatText(message, arguments...));
    return E_FAIL;
}
// "Param Condition not met: condition | message". Answers E_INVALIDARG.
template <class... Arguments>
HRESULT ParameterConditionNotMet(LocatedFormat<char> condition, std::string_view message, const Arguments&... arguments) {
    if (ShouldLog(Severity::Error)) LogErrorShape(condition, "Param Condition not met: ", "", FormatText(message, arguments...));
    return E_INVALIDARG;
}
// "call | HRESULT %0X | message". Answers `result` itself, also when it is no failure.
template <class... Arguments>
HRESULT CallFailed(LocatedFormat<char> call, HRESULT result, std::string_view message, const Arguments&... arguments) {
    if (ShouldLog(Severity::Error)) LogErrorShape(call, "", FormatText(" | HRESULT %0X", result), FormatText(message, arguments...));
    return result;
}

// "Last error: 0x%08X(%s)" with the system's message without its line end, or "[Error while formatting last error]".
std::string LastErrorText(DWORD code);

}  // namespace Zorvex
