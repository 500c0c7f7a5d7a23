// A live window's thread as a place where requests run.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "Controller/Loader/LoadResult.h"
#include "Controller/Loader/LoaderOptions.h"
#include "Controller/Loader/WindowInfo.h"

namespace Zorvex::Loader {

struct Answer {
    std::vector<std::uint8_t> response;
    DWORD threadId = 0;  // the thread that ran the request
};

class ITarget {
public:
    virtual ~ITarget() = default;

    // Runs one request on the thread that owns the window. Waits at most `timeout`; zero waits as long as it takes.
    // Never outlasts the target: a process that ends is an error at once. A late answer harms nobody: the memory it
    // goes to lives as long as either side uses it. LoadProblem::NoResponse when the server answered nothing.
    virtual LoadResult<Answer> Execute(std::span<const std::uint8_t> request, std::chrono::milliseconds timeout) = 0;

    // True if a server that was let to stay is in the target.
    virtual LoadResult<bool> ServerStays(std::chrono::milliseconds timeout) = 0;

    // Unloads a server that was let to stay; success as well if there is none.
    virtual std::optional<LoadFailure> Unload(std::chrono::milliseconds timeout) = 0;

    virtual const LoaderOptions& Options() const = 0;
    // Not while a call runs.
    virtual void SetAfterRequest(AfterRequest afterRequest) = 0;
};

}  // namespace Zorvex::Loader
