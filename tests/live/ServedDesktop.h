// A desktop file behind real windows: the serving program, run for the length of a test.
#pragma once

#include <map>
#include <string>

#include "Common/include/SafeObject.h"
#include "Platform/Windows.h"

namespace Zorvex::Testing {

class ServedDesktop {
public:
    // The text of a desktop file. Throws std::runtime_error when it can't be served.
    explicit ServedDesktop(const std::string& text);
    ServedDesktop(const ServedDesktop&) = delete;
    ServedDesktop& operator=(const ServedDesktop&) = delete;
    ~ServedDesktop();

    // The real handles by the ids of the file.
    const std::map<std::string, HWND>& Windows() const { return m_windows; }
    // The frontmost one. All windows belong to one thread.
    HWND Front() const { return m_front; }

private:
    std::string ReadLine();

    std::wstring m_file;
    SafeObject m_process;
    SafeObject m_output;
    std::map<std::string, HWND> m_windows;
    HWND m_front = nullptr;
};

}  // namespace Zorvex::Testing
