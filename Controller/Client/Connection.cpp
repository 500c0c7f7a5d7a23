#include "Controller/Client/Connection.h"

#include "Common/include/FormatText.h"

namespace Zorvex::Client {

const char* ToText(Problem problem) {
    switch (problem) {
        case Problem::NoSuchTarget: return "no such window or process";
        case Problem::WrongBitness: return "the target is of the other bitness";
        case Problem::AccessDenied: return "access to the target was denied";
        case Problem::LoadFailed: return "the server could not be loaded into the target";
        case Problem::TargetHung: return "the target's window takes no messages";
        case Problem::TargetGone: return "the target is gone";
        case Problem::TimedOut: return "the server did not answer in time";
        case Problem::NoResponse: return "the server gave no response";
        case Problem::ServerException: return "the server threw an exception";
        case Problem::MalformedResponse: return "the response is malformed";
    }
    return "";
}

std::string Failure::ToString() const {
    std::string text = ToText(problem);
    if (!detail.empty()) text += ": " + detail;
    return text;
}

std::optional<Failure> Client::Exchange(const RequestBuffer& request, RequestBuffer& response, bool responseExpected) {
    response = RequestBuffer();
    if (auto failure = m_transport.Send(request, response, m_timeout)) return failure;
    if (responseExpected && response.empty())
        return Failure{Problem::NoResponse, "it could not read the request, or does not serve it"};
    return std::nullopt;
}

Failure Client::MalformedVariant(HRESULT result) {
    return Failure{Problem::MalformedResponse, FormatText("a variant could not be built, result 0x%08X", result)};
}

}  // namespace Zorvex::Client
