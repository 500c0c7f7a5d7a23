// How a request gets into its target, and what is left there.
#pragma once

#include <chrono>
#include <stop_token>
#include <string>

namespace Zorvex::Loader {

// What happens to the server in the target once the request is served. The server is shared by all controllers.
enum class AfterRequest {
    AsFound,  // stays if an earlier request let it stay, else is unloaded
    Stay,     // stays loaded, and with it the identifiers that it gave
    Go,       // is unloaded although an earlier request let it stay
};

struct LoaderOptions {
    // Full paths. An empty one means: beside the controller's own file, under the name for this word size.
    std::wstring hostPath;
    std::wstring serverPath;
    // A library that is loaded before the server and goes with it; empty for none. If it exports StartBeside and
    // StopBeside (no arguments, no result), these are called after its loading and before its unloading.
    std::wstring besidePath;
    AfterRequest afterRequest = AfterRequest::AsFound;
    // A request for stopping ends every wait at once with LoadProblem::Cancelled.
    std::stop_token stop;
};

}  // namespace Zorvex::Loader
