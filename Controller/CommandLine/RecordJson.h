// Requests and responses as JSON text, through the fields that the records list themselves.
#pragma once

#include <optional>
#include <string>

#include "Common/include/HeapAllocator.h"
#include "RuntimeCore/Requests/RequestId.h"

namespace Zorvex::Controller {

// What a request's fields are when the text leaves them out.
struct RequestDefaults {
    std::uint32_t clientPid = 0;  // of a field of this name
    HWND window = nullptr;        // of a field called window, and of an identifier called root
    std::uint32_t searchMilliseconds = 8'000;  // of a search
};

// By name, in any case, or by number. Nothing if there is none.
std::optional<RequestId> FindRequest(const std::string& name);
// "Scrape" and so on.
std::string RequestName(RequestId id);

// All requests, one a line, with their fields and their types.
std::string ListRequests();
// The same as JSON: a list of objects.
std::string ListRequestsAsJson();

// The bytes of a request; its fields from a JSON object, an empty text being an empty one. Throws CommandFailure
// (WrongArguments) and names the place: "selectors[0].options.scope: a number is expected".
RequestBuffer EncodeRequestJson(RequestId id, const std::string& json, const RequestDefaults& defaults);

// The fields of a response. Throws CommandFailure (TargetProblem) for bytes that aren't that response. Empty bytes give null.
std::string DecodeResponseJson(RequestId id, const RequestBuffer& response);

}  // namespace Zorvex::Controller
