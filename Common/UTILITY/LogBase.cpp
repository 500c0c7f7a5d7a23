#include "Common/UTILITY/LogBase.h"

#include <string>

namespace Zorvex {
namespace {

// "2026-11-21T02:17:58.123Z" of the system's time, which counts 100 ns since 1601.
std::string TimeStamp() {
    FILETIME time{};
    ::GetSystemTimeAsFileTime(&time);
    const ULONGLONG ticks = static_cast<ULONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    const ULONGLONG milliseconds = ticks / 10'000;
    const unsigned ofDay = static_cast<unsigned>(milliseconds % 86'400'000);
    // Years are counted from March, so that the leap day comes last; 1601-01-01 is day 306 of the year that began in
    // March 1600, the first of a cycle of 400 years.
    const unsigned day = static_cast<unsigned>(milliseconds / 86'400'000) + 306;
    const unsigned cycle = day / 146'097, ofCycle = day % 146'097;
    const unsigned yearOfCycle = (ofCycle - ofCycle / 1'460 + ofCycle / 36'524 - ofCycle / 146'096) / 365;
    const unsigned ofYear = ofCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
    const unsigned monthFromMarch = (5 * ofYear + 2) / 153;
    const unsigned month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    const unsigned year = 1600 + cycle * 400 + yearOfCycle + (month <= 2 ? 1 : 0);
    return FormatText("%04u-%02u-%02uT%02u:%02u:%02u.%03uZ", year, month, ofYear - (153 * monthFromMarch + 2) / 5 + 1,
                      ofDay / 3'600'000, ofDay / 60'000 % 60, ofDay / 1'000 % 60, ofDay % 1'000);
}

}  // namespace

bool LogBase::OpenFile(std::wstring_view folder, std::wstring_view name) {
    std::lock_guard guard(m_fileLock);
    return m_file.Open(folder, name);
}

void LogBase::CloseFile() {
    std::lock_guard guard(m_fileLock);
    m_file.Close();
}

void LogBase::WriteLine(Severity severity, const char* file, unsigned line, std::string_view message) {
    const Handler handler = m_handler;
    if (handler && handler(severity, file, line, message)) return;
    std::string text = FormatText("%s [%u:%u] %c %s", TimeStamp(), ::GetCurrentProcessId(), ::GetCurrentThreadId(),
                                  SeverityLetter(severity), FileNameOf(file));
    if (line != 0) text += FormatText(":%u", line);
    text += ' ';
    text += message;
    text += "\r\n";
    std::lock_guard guard(m_fileLock);
    if (m_file.IsOpen()) m_file.Append(text);
}

char SeverityLetter(Severity severity) noexcept {
    constexpr std::string_view c_letters = "VIWEF";
    const auto index = static_cast<std::size_t>(static_cast<int>(severity) - static_cast<int>(Severity::Verbose));
    return index < c_letters.size() ? c_letters[index] : '?';
}

const char* FileNameOf(const char* path) noexcept {
    const char* name = path;
    for (const char* at = path; *at; ++at)
        if (*at == '\\' || *at == '/') name = at + 1;
    return name;
}

}  // namespace Zorvex
