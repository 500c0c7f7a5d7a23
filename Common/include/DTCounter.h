// Logs how long its scope took.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex {

class DTCounter {
public:
    // At most 64 characters of `name` are kept; null or empty gives an unnamed counter.
    explicit DTCounter(const char* name = nullptr);
    DTCounter(const DTCounter&) = delete;
    DTCounter& operator=(const DTCounter&) = delete;
    // Logs the elapsed milliseconds at information level.
    ~DTCounter();

private:
    void Log() const;

    static constexpr int c_maximumName = 64;
    char m_name[c_maximumName + 1] = {};
    ULONGLONG m_start;
};

}  // namespace Zorvex
