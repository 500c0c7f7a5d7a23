#include "Common/UTILITY/LogRouter.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "Common/include/UtfConversion.h"

namespace Zorvex {
namespace {

constexpr std::uint64_t c_settingLifetime = 3'000;
constexpr ULONGLONG c_messageAloneFlag = 2;
constexpr int c_quietLevel = static_cast<int>(Severity::Fatal);

constexpr wchar_t c_levelSetting[] = L"ZORVEX_LOG_LEVEL";
constexpr wchar_t c_fileSetting[] = L"ZORVEX_FILE_LOGGING";

struct LevelName {
    const wchar_t* name;
    Severity severity;
};
constexpr LevelName c_levelNames[] = {{L"VERBOSE", Severity::Verbose},
                                      {L"INFO", Severity::Info},
                                      {L"WARNING", Severity::Warning},
                                      {L"ERROR", Severity::Error},
                                      {L"FATAL", Severity::Fatal}};

// The names compared with are ASCII, so folding these letters is all that can make a difference.
bool EqualWithoutCase(std::wstring_view a, std::wstring_view b) {
    const auto fold = [](wchar_t unit) { return unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(unit - L'a' + L'A') : unit; };
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (fold(a[i]) != fold(b[i])) return false;
    return true;
}

// Events count from 5 for verbose down to 1 for fatal.
BYTE EventLevel(Severity severity) { return static_cast<BYTE>(4 - static_cast<int>(severity)); }

}  // namespace

LogRouter& LogRouter::OfProcess() {
    // Never destroyed, since the destructors of other statics may still log; but the event provider must not call into
    // a library that is gone, so its end is tied to the end of the library.
    static LogRouter& router = *new LogRouter(*LogPlatform::CreateOfSystem().release());
    static const int atExit = std::atexit([] { OfProcess().Shutdown(); });
    static_cast<void>(atExit);
    return router;
}

bool LogRouter::Cached::IsYoung(std::uint64_t now) const {
    const std::uint64_t read = time.load(std::memory_order_acquire);
    return read != c_never && now - read < c_settingLifetime;
}

int LogRouter::Level() {
    const std::uint64_t now = ::GetTickCount64();
    if (m_level.IsYoung(now)) return m_level.value.load(std::memory_order_relaxed);
    int level = c_quietLevel;
    if (const auto text = m_platform.load()->ReadSetting(c_levelSetting))
        for (const LevelName& known : c_levelNames)
            if (EqualWithoutCase(*text, known.name)) {
                level = static_cast<int>(known.severity);
                break;
            }
    m_level.value.exchange(level);
    m_level.time.exchange(now);
    return level;
}

bool LogRouter::FileWanted() {
    const std::uint64_t now = ::GetTickCount64();
    if (m_fileFlag.IsYoung(now)) return m_fileFlag.value != 0;
    const auto text = m_platform.load()->ReadSetting(c_fileSetting);
    const bool wanted = text && *text == L"1";
    m_fileFlag.value.exchange(wanted);
    // The time comes last: whoever finds the value young finds the file open as well, and loses no line.
    if (wanted) SetUpFileOnce();
    m_fileFlag.time.exchange(now);
    return wanted;
}

void LogRouter::ForgetSettings() {
    m_level.time = Cached::c_never;
    m_fileFlag.time = Cached::c_never;
}

LogPlatform& LogRouter::ExchangePlatform(LogPlatform& platform) {
    LogPlatform* before = m_platform.exchange(&platform);
    ForgetSettings();
    return *before;
}

void LogRouter::SetUpOnce() {
    std::call_once(m_setUp, [this] {
        m_base.SetMinimumLevel(c_quietLevel);
        m_base.SetHandler([](Severity, const char*, unsigned, std::string_view) { return false; });
        m_home.RegisterEvents(&OnEventSession, this);
        m_eventsRegistered = true;
        // A logger inside the viewer of debug output would feed on its own lines.
        const std::wstring path = m_home.ProcessPath();
        const std::wstring_view name = std::wstring_view(path).substr(path.find_last_of(L"\\/") + 1);
        if (EqualWithoutCase(name, L"Dbgview.exe") || EqualWithoutCase(name, L"Dbgview64.exe")) m_debugOutput = false;
    });
}

void LogRouter::SetUpFileOnce() {
    // What the set-up itself logs must not set up again.
    static thread_local bool t_settingUp = false;
    if (t_settingUp) return;
    t_settingUp = true;
    std::call_once(m_fileSetUp, [this] {
        DWORD session = 0;
        ::ProcessIdToSessionId(::GetCurrentProcessId(), &session);
        const std::wstring name = FormatText(L"ZorvexLogs-%u.txt", session);
        LPWSTR folder = nullptr;
        const HRESULT result = ::SHGetKnownFolderPath(FOLDERID_Desktop, 0, nullptr, &folder);
        if (SUCCEEDED(result) && folder) {
            m_base.OpenFile(folder, name);
        } else {
            constexpr const char* c_desktopId = "{B4BFCC3A-DB2C-424C-B029-7FE99A87C641}";
            const std::string text = FormatText("GetKnownFolder with ID %s failed with hr 0x%08X", c_desktopId, result);
            if (ShouldLog(Severity::Error)) {
                const std::string line = text + "\n";
                Emit(Severity::Error, __FILE__, __LINE__, 0, line);
            }
        }
        ::CoTaskMemFree(folder);
    });
    t_settingUp = false;
}

void LogRouter::OnEventSession(void* context, bool enabled, BYTE level, ULONGLONG flags) {
    auto& self = *static_cast<LogRouter*>(context);
    self.m_eventFlags = enabled ? flags : 0;
    // A session that wants everything says so with level 0 or one above all.
    const int lowest = level == 0 || level > EventLevel(Severity::Verbose) ? static_cast<int>(Severity::Verbose) : 4 - level;
    self.m_base.SetMinimumLevel(enabled ? lowest : c_quietLevel);
}

void LogRouter::SendEvent(Severity severity, const char* file, unsigned line, std::string_view message) {
    if (!m_eventsRegistered || !m_home.EventWanted(EventLevel(severity))) return;
    const std::wstring text = WideText(message);
    m_home.WriteEvent(EventLevel(severity), (m_eventFlags & c_messageAloneFlag) ? text : FormatText(L"%s(%u) %s", file, line, text));
}

void LogRouter::Emit(Severity severity, const char* file, unsigned line, std::size_t messageOffset, std::string_view text) {
    SetUpOnce();
    if (!m_debugOutput) return;
    std::string_view message = text.substr(std::min(messageOffset, text.size()));
    if (message.ends_with('\n')) message.remove_suffix(1);
    SendEvent(severity, file, line, message);
    if (static_cast<int>(severity) >= Level()) m_platform.load()->DebugOutput(std::string(text).c_str());
    if (FileWanted()) m_base.WriteLine(severity, file, line, message);
}

void LogRouter::Shutdown() {
    if (m_eventsRegistered.exchange(false)) m_home.UnregisterEvents();
    m_base.CloseFile();
}

}  // namespace Zorvex
