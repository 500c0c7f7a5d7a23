// Collects the log lines of its scope, on every platform.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Zorvex::Testing {

class LogCapture {
public:
    // Sets the log level for the scope, VERBOSE unless told otherwise. Inside it nothing reaches the real sinks.
    explicit LogCapture(std::wstring_view level = L"VERBOSE");
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture();

    // Whether any line holds the text, and how many do.
    bool Contains(std::string_view text) const;
    std::size_t Count(std::string_view text) const;
    // Each line as severity letter, blank, "[function] " where there is one, and message: "E [DoIt] It failed".
    std::vector<std::string> Lines() const;
    // All of Lines() as one text, for failure messages.
    std::string Text() const;
    void Clear();

private:
    class Sink;
    std::unique_ptr<Sink> m_sink;
};

}  // namespace Zorvex::Testing
