#include "Common/include/Log.h"

#include <cstring>
#include <iterator>
#include <new>

#include "Common/UTILITY/LogRouter.h"
#include "Common/include/UtfConversion.h"

namespace Zorvex {
namespace {

// What the printf-like shapes format into; the cut is silent.
constexpr std::size_t c_messageLimit = 4'095;

// Compilers write the call operator without a blank.
const char* FunctionName(const char* function) { return std::strcmp(function, "operator()") == 0 ? "operator ()" : function; }

}  // namespace

bool ShouldLog(Severity severity) { return LogRouter::OfProcess().ShouldLog(severity); }

void LogFormatted(const SourceLocation& where, std::string_view format, std::span<const FormatArgument> arguments) {
    if (!ShouldLog(where.severity)) return;
    std::string message = FormatTextV(format, arguments);
    if (message.size() > c_messageLimit) message.resize(c_messageLimit);
    LogStream(where.file, where.function, where.line, where.severity) << message;
}

void LogFormatted(const SourceLocation& where, std::wstring_view format, std::span<const FormatArgument> arguments) {
    if (!ShouldLog(where.severity)) return;
    std::wstring message = FormatTextV(format, arguments);
    if (message.size() > c_messageLimit) message.resize(c_messageLimit);
    LogStream(where.file, where.function, where.line, where.severity) << message;
}

LogStream::LogStream(Severity severity, const char* file, const char* function, unsigned line)
    : LogStream(file, function, line, severity) {}

LogStream::LogStream(const char* file, const char* function, unsigned line, Severity severity)
    : m_file(file), m_severity(severity), m_line(line) {
    m_stream << '{' << ::GetCurrentThreadId() << "}[" << SeverityLetter(severity) << "][(v" << VANTREL_VERSION << ") " << FileNameOf(file);
    // Without a line number the bracket stays open, on purpose.
    if (line != 0) m_stream << ':' << line << ']';
    // The function belongs to the message: events and the file carry it as well.
    m_messageOffset = static_cast<std::size_t>(m_stream.tellp());
    if (function && *function) m_stream << '[' << FunctionName(function) << "] ";
}

LogStream::~LogStream() {
    // A line for which there is no memory is dropped: logging must not end the process that it reports on.
    try {
        m_stream << '\n';
        LogRouter::OfProcess().Emit(m_severity, m_file, m_line, m_messageOffset, m_stream.view());
    } catch (const std::bad_alloc&) {
    }
}

void LogStream::AddWide(std::wstring_view text) { m_stream << NarrowText(text); }

void LogErrorShape(const LocatedFormat<char>& expression, std::string_view prefix, std::string_view result, std::string_view message) {
    SourceLocation where = expression.where;
    where.severity = Severity::Error;
    const FormatArgument arguments[] = {prefix, expression.text, result, message};
    LogFormatted(where, "%s%s%s | %s", arguments);
}

std::string LastErrorText(DWORD code) {
    char text[512] = {};
    const DWORD length = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text,
                                          static_cast<DWORD>(std::size(text)), nullptr);
    if (length == 0) return "[Error while formatting last error]";
    std::string_view message(text, length);
    while (message.ends_with('\n') || message.ends_with('\r')) message.remove_suffix(1);
    return FormatText("Last error: 0x%08X(%s)", code, message);
}

}  // namespace Zorvex
