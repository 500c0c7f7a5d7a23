#include "tests/Support/LogCapture.h"

#include <mutex>

#include "Common/UTILITY/LogRouter.h"

namespace Zorvex::Testing {
namespace {

// "{1}[E][(v1.0.0.0) File.cpp:12][DoIt] It failed" becomes "E [DoIt] It failed".
std::string ShortLine(std::string_view line) {
    while (line.ends_with('\n') || line.ends_with('\r')) line.remove_suffix(1);
    const std::size_t letter = line.find("}[");
    const std::size_t version = line.find("][(v");
    if (letter == std::string_view::npos || version == std::string_view::npos) return std::string(line);
    std::string result(line.substr(letter + 2, version - letter - 2));
    const std::size_t place = line.find(']', version + 1);
    result += ' ';
    result += place == std::string_view::npos ? line.substr(version + 1) : line.substr(place + 1);
    return result;
}

}  // namespace

// Stands in for the system behind the process's logger, so that capturing is the same everywhere and touches no
// setting that another process reads.
class LogCapture::Sink : public LogPlatform {
public:
    explicit Sink(std::wstring_view level) : m_level(level), m_before(LogRouter::OfProcess().ExchangePlatform(*this)) {}
    ~Sink() override { LogRouter::OfProcess().ExchangePlatform(m_before); }

    std::optional<std::wstring> ReadSetting(const wchar_t* name) override {
        return std::wstring_view(name) == L"ZORVEX_LOG_LEVEL" ? std::optional(m_level) : std::nullopt;
    }
    void DebugOutput(const char* line) override {
        std::lock_guard guard(m_lock);
        m_lines.push_back(ShortLine(line));
    }
    std::wstring ProcessPath() override { return {}; }
    // Events stay with the real system: the logger asks its first platform for them, never this one.
    void RegisterEvents(EventListener, void*) override {}
    void UnregisterEvents() override {}
    bool EventWanted(BYTE) override { return false; }
    void WriteEvent(BYTE, const std::wstring&) override {}

    std::vector<std::string> Lines() {
        std::lock_guard guard(m_lock);
        return m_lines;
    }
    void Clear() {
        std::lock_guard guard(m_lock);
        m_lines.clear();
    }

private:
    std::wstring m_level;
    LogPlatform& m_before;
    std::mutex m_lock;
    std::vector<std::string> m_lines;
};

LogCapture::LogCapture(std::wstring_view level) : m_sink(std::make_unique<Sink>(level)) {}
LogCapture::~LogCapture() = default;

bool LogCapture::Contains(std::string_view text) const { return Count(text) > 0; }

std::size_t LogCapture::Count(std::string_view text) const {
    std::size_t count = 0;
    for (const std::string& line : m_sink->Lines()) count += line.find(text) != std::string::npos;
    return count;
}

std::vector<std::string> LogCapture::Lines() const { return m_sink->Lines(); }

std::string LogCapture::Text() const {
    std::string text;
    for (const std::string& line : m_sink->Lines()) text += line + "\n";
    return text;
}

void LogCapture::Clear() { m_sink->Clear(); }

}  // namespace Zorvex::Testing
