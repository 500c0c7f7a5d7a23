#include "Controller/Loader/Windows/WindowsTarget.h"

#include <algorithm>

#include "Common/include/UtfConversion.h"
#include "Controller/Loader/Bitness.h"
#include "Controller/Loader/Windows/ProcessInfo.h"
#include "Controller/Loader/Windows/SystemMessage.h"
#include "Controller/Loader/Windows/ThreadHook.h"

namespace Zorvex::Loader {

namespace {

using Host::HostOutcome;
using Host::HostTask;

constexpr DWORD BusyRetryInterval = 15;

Host::ServerPolicy PolicyOf(AfterRequest afterRequest) {
    switch (afterRequest) {
        case AfterRequest::Stay: return Host::ServerPolicy::Stay;
        case AfterRequest::Go: return Host::ServerPolicy::Go;
        case AfterRequest::AsFound: break;
    }
    return Host::ServerPolicy::AsFound;
}

std::optional<LoadFailure> FindLibrary(std::wstring& path, const wchar_t* ownName, bool required) {
    if (path.empty()) {
        if (!required) return std::nullopt;
        path = FolderOfThisProgram() + ownName;
    }
    // The target has another current folder.
    wchar_t full[Host::PathRoom];
    const DWORD length = GetFullPathNameW(path.c_str(), Host::PathRoom, full, nullptr);
    if (length == 0 || length >= Host::PathRoom) {
        return LoadFailure{LoadProblem::LibraryNotFound, NarrowText(path) + ": the path is too long"};
    }
    path = full;
    if (GetFileAttributesW(full) == INVALID_FILE_ATTRIBUTES) {
        return LoadFailure{LoadProblem::LibraryNotFound, NarrowText(path)};
    }
    return std::nullopt;
}

void PutPath(const std::wstring& path, wchar_t* room) { Host::BoundedText(room, Host::PathRoom).Add(path.c_str()); }

LoadFailure FailureOf(const SharedExchange& exchange) {
    const std::string text = NarrowText(exchange.Text());
    switch (exchange->outcome) {
        case HostOutcome::NoResponse:
            return {LoadProblem::NoResponse, "the server couldn't read the request, or doesn't answer its kind"};
        case HostOutcome::LibraryNotFound: return {LoadProblem::LibraryNotFound, text + " (as seen by the target)"};
        case HostOutcome::LibraryFailed: return {LoadProblem::LibraryFailed, text};
        case HostOutcome::ExportMissing: return {LoadProblem::LibraryFailed, text + " isn't a server: it doesn't export ExecuteAa"};
        case HostOutcome::Exception: return {LoadProblem::ServerException, text};
        case HostOutcome::Fault: return {LoadProblem::ServerFault, text};
        case HostOutcome::AnswerTooLarge:
            return {LoadProblem::AnswerTooLarge, std::to_string(exchange->responseSize) + " bytes"};
        case HostOutcome::OutOfMemory: return {LoadProblem::Failed, "the target has no memory left for the answer"};
        case HostOutcome::Busy: return {LoadProblem::TargetBusy, "another request runs in the target"};
        default: break;
    }
    return {LoadProblem::Failed, "the host gave an answer that this controller doesn't know; they must be of one version"};
}

}  // namespace

LoadResult<std::unique_ptr<ITarget>> WindowsTarget::Open(HWND window, const LoaderOptions& options) {
    std::unique_ptr<WindowsTarget> target(new WindowsTarget);
    target->m_window = window;
    target->m_options = options;
    DWORD processId = 0;
    target->m_threadId = GetWindowThreadProcessId(window, &processId);
    if (target->m_threadId == 0) return LoadFailure{LoadProblem::NoSuchWindow, "the handle names no window"};

    target->m_process = SafeObject(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    if (!target->m_process) {
        const DWORD error = GetLastError();
        if (error == ERROR_ACCESS_DENIED) {
            return LoadFailure{LoadProblem::AccessDenied,
                               "process " + std::to_string(processId) + " runs under another user or with more rights"};
        }
        if (error == ERROR_INVALID_PARAMETER) return LoadFailure{LoadProblem::NoSuchProcess, std::to_string(processId)};
        return CallFailure(LoadProblem::Failed, "OpenProcess", error);
    }
    target->m_thread = SafeObject(OpenThread(SYNCHRONIZE, FALSE, target->m_threadId));
    if (auto failure = CheckBitness(OwnBitness(), BitnessOfProcess(target->m_process.Get()))) return std::move(*failure);

    LoaderOptions& own = target->m_options;
    if (auto failure = FindLibrary(own.hostPath, HostLibraryName(OwnBitness()), true)) return std::move(*failure);
    if (auto failure = FindLibrary(own.serverPath, ServerLibraryName(OwnBitness()), true)) return std::move(*failure);
    if (auto failure = FindLibrary(own.besidePath, L"", false)) return std::move(*failure);
    return std::unique_ptr<ITarget>(std::move(target));
}

std::optional<LoadFailure> WindowsTarget::Run(HostTask task, SharedExchange& exchange, std::chrono::milliseconds timeout) const {
    const Deadline deadline(timeout);
    if (WaitForSingleObject(m_process.Get(), 0) == WAIT_OBJECT_0) return LoadFailure{LoadProblem::TargetGone, "the process has ended"};
    if (!IsWindow(m_window)) return LoadFailure{LoadProblem::TargetGone, "the window is gone"};
    exchange->task = task;
    exchange->policy = PolicyOf(m_options.afterRequest);
    PutPath(m_options.serverPath, exchange->serverPath);
    PutPath(m_options.besidePath, exchange->besidePath);
    const WaitPlace place{m_window, m_process.Get(), m_thread.Get()};

    auto hook = ThreadHook::Install(m_options.hostPath, m_threadId);
    if (!hook) return hook.Error();
    bool wasBusy = false;
    while (true) {
        if (auto failure = PostAndWait(place, exchange, deadline, m_options.stop)) {
            // Between two tries the deadline finds the message on its way; the target isn't hung for that.
            if (wasBusy && failure->problem == LoadProblem::TargetHung) {
                return LoadFailure{LoadProblem::TargetBusy, "another request runs in the target"};
            }
            return failure;
        }
        wasBusy = true;
        if (exchange->outcome != HostOutcome::Busy) return std::nullopt;
        if (deadline.Passed()) return FailureOf(exchange);
        if (SleepUnlessStopped(deadline.Remaining(BusyRetryInterval), m_options.stop)) {
            return LoadFailure{LoadProblem::Cancelled, ""};
        }
        exchange.Rewind();
    }
}

LoadResult<Answer> WindowsTarget::Execute(std::span<const std::uint8_t> request, std::chrono::milliseconds timeout) {
    auto exchange = SharedExchange::Create(request);
    if (!exchange) return exchange.Error();
    if (auto failure = Run(HostTask::Execute, *exchange, timeout)) return std::move(*failure);
    if ((*exchange)->outcome != HostOutcome::Response) return FailureOf(*exchange);
    auto response = exchange->TakeResponse();
    if (!response) return response.Error();
    return Answer{std::move(*response), (*exchange)->threadId};
}

LoadResult<bool> WindowsTarget::ServerStays(std::chrono::milliseconds timeout) {
    auto exchange = SharedExchange::Create({});
    if (!exchange) return exchange.Error();
    if (auto failure = Run(HostTask::AskIfServerStays, *exchange, timeout)) return std::move(*failure);
    if ((*exchange)->outcome == HostOutcome::Stays) return true;
    if ((*exchange)->outcome == HostOutcome::DoesNotStay) return false;
    return FailureOf(*exchange);
}

std::optional<LoadFailure> WindowsTarget::Unload(std::chrono::milliseconds timeout) {
    auto exchange = SharedExchange::Create({});
    if (!exchange) return exchange.Error();
    if (auto failure = Run(HostTask::Unload, *exchange, timeout)) return failure;
    const HostOutcome outcome = (*exchange)->outcome;
    if (outcome == HostOutcome::Stays || outcome == HostOutcome::DoesNotStay) return std::nullopt;
    return FailureOf(*exchange);
}

}  // namespace Zorvex::Loader
