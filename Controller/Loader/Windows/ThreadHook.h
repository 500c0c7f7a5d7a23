// The hook that brings the host onto a window's thread, for as long as this object lives.
#pragma once

#include <string>

#include "Controller/Loader/LoadResult.h"
#include "Platform/Windows.h"

namespace Zorvex::Loader {

class ThreadHook {
public:
    // Loads the host at `path` into this process as well: the system wants the hook's address from here.
    static LoadResult<ThreadHook> Install(const std::wstring& path, DWORD threadId);

    ThreadHook(ThreadHook&& other) noexcept;
    ThreadHook& operator=(ThreadHook&&) = delete;
    ~ThreadHook();

private:
    ThreadHook(HMODULE library, HHOOK hook) : m_library(library), m_hook(hook) {}

    HMODULE m_library;
    HHOOK m_hook;
};

}  // namespace Zorvex::Loader
