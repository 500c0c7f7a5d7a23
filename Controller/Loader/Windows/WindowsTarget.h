// A window's thread as a target, entered by a hook.
#pragma once

#include <memory>

#include "Common/include/SafeObject.h"
#include "Controller/Loader/ITarget.h"
#include "Controller/Loader/Windows/AnswerWait.h"

namespace Zorvex::Loader {

class WindowsTarget : public ITarget {
public:
    static LoadResult<std::unique_ptr<ITarget>> Open(HWND window, const LoaderOptions& options);

    LoadResult<Answer> Execute(std::span<const std::uint8_t> request, std::chrono::milliseconds timeout) override;
    LoadResult<bool> ServerStays(std::chrono::milliseconds timeout) override;
    std::optional<LoadFailure> Unload(std::chrono::milliseconds timeout) override;
    const LoaderOptions& Options() const override { return m_options; }
    void SetAfterRequest(AfterRequest afterRequest) override { m_options.afterRequest = afterRequest; }

private:
    WindowsTarget() = default;

    // Posts until the target isn't busy with somebody else's request. Nothing when it is answered.
    std::optional<LoadFailure> Run(Host::HostTask task, SharedExchange& exchange, std::chrono::milliseconds timeout) const;

    HWND m_window = nullptr;
    DWORD m_threadId = 0;
    SafeObject m_process;
    SafeObject m_thread;
    LoaderOptions m_options;
};

}  // namespace Zorvex::Loader
