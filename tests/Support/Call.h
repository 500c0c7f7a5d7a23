// Asks the server through its export, as a client does.
#pragma once

#include <optional>
#include <stdexcept>

#include "InProc/Vantrel/ExecuteAa.h"
#include "RuntimeCore/Requests/Catalogue.h"

namespace Zorvex::Testing {

inline constexpr std::uint32_t kClientPid = 4711;

// The raw response, empty where none came back.
inline RequestBuffer CallRaw(const RequestBuffer& request) {
    RequestBuffer response;
    ExecuteAa(&request, &response);
    return response;
}

// Nothing where no response came back.
template <class Request>
std::optional<typename Request::Response> TryCall(const Request& request) {
    const RequestBuffer response = CallRaw(EncodeRequest(request));
    if (response.empty()) return std::nullopt;
    return DecodeResponse<typename Request::Response>(response);
}

template <class Request>
typename Request::Response Call(const Request& request) {
    auto response = TryCall(request);
    if (!response) throw std::runtime_error("the server gave no response");
    return std::move(*response);
}

// Lets go of everything that was registered for the tests' client, so that a desktop's references can balance.
struct CacheCleaner {
    ~CacheCleaner() { Release(); }
    static void Release(std::uint32_t clientPid = kClientPid) {
        UnregisterAllContainersByClientPidRequest request;
        request.clientPid = clientPid;
        CallRaw(EncodeRequest(request));
    }
};

}  // namespace Zorvex::Testing
