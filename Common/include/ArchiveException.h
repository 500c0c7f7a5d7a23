// What a malformed archive throws.
#pragma once

#include <string>
#include <utility>

namespace Zorvex {

// Thrown by value, caught by reference. It has no base class, so that a handler of standard exceptions doesn't
// swallow it.
class ArchiveException {
public:
    explicit ArchiveException(std::string text) : m_text(std::move(text)) {}
    const std::string& Text() const noexcept { return m_text; }

private:
    std::string m_text;
};

}  // namespace Zorvex
