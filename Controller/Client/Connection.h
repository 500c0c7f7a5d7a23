// The client's side of the request channel: one typed call for each request. docs/client-library.md shows its use.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

#include "RuntimeCore/Requests/Catalogue.h"

namespace Zorvex::Client {

// Why a call gave no answer. Each is something else for a person to do.
enum class Problem {
    NoSuchTarget,       // no such window or process
    WrongBitness,       // a 32-bit library can't enter a 64-bit process, nor the other way round
    AccessDenied,       // the target runs under another user or with more rights
    LoadFailed,         // the server didn't get into the target, for another reason
    TargetHung,         // the window's thread took no message before the deadline
    TargetGone,         // the process ended before it answered
    TimedOut,           // the server took the request and didn't answer before the deadline
    NoResponse,         // the server answered nothing: it couldn't read the request, or doesn't serve it
    ServerException,    // an exception came out of the server
    MalformedResponse,  // the answer isn't what this request's answer looks like
};

// "the target is gone" and so on; an empty text for any other number.
const char* ToText(Problem problem);

struct Failure {
    Problem problem;
    std::string detail;  // for a person; may be empty

    // One line of both.
    std::string ToString() const;
};

// Brings the bytes of a request to a server and those of its response back.
class Transport {
public:
    virtual ~Transport() = default;
    // Waits at most `timeout`; zero waits as long as it takes. `response` is empty before the call and stays empty if
    // the server gives none. Answers what went wrong, or nothing. Not for two threads at once.
    virtual std::optional<Failure> Send(const RequestBuffer& request, RequestBuffer& response,
                                        std::chrono::milliseconds timeout) = 0;
};

// Either an answer or the reason why there is none.
template <class Response>
class Outcome {
public:
    Outcome(Response response) : m_state(std::move(response)) {}
    Outcome(Failure failure) : m_state(std::move(failure)) {}

    explicit operator bool() const noexcept { return m_state.index() == 0; }
    // Throw std::bad_variant_access when there is no answer.
    Response& operator*() { return std::get<0>(m_state); }
    const Response& operator*() const { return std::get<0>(m_state); }
    Response* operator->() { return &std::get<0>(m_state); }
    const Response* operator->() const { return &std::get<0>(m_state); }
    // Throws std::bad_variant_access when there is an answer.
    const Failure& Error() const { return std::get<1>(m_state); }

private:
    std::variant<Response, Failure> m_state;
};

class Client {
public:
    // The transport must outlive the client.
    explicit Client(Transport& transport, std::chrono::milliseconds timeout = std::chrono::seconds(30))
        : m_transport(transport), m_timeout(timeout) {}

    std::chrono::milliseconds Timeout() const noexcept { return m_timeout; }
    void SetTimeout(std::chrono::milliseconds timeout) noexcept { m_timeout = timeout; }

    // The answer's type follows from the request's: Call(FindElemFromPointRequest{...}) gives an
    // Outcome<FindElemFromPointResponse>. Throws ArchiveException or ComException when the request itself can't be
    // encoded, and nothing else but std::bad_alloc.
    template <class Request>
    Outcome<typename Request::Response> Call(const Request& request) {
        using Response = typename Request::Response;
        constexpr bool expectsNothing = std::is_same_v<Response, NoResponse>;
        RequestBuffer bytes;
        if (auto failure = Exchange(EncodeRequest(request), bytes, !expectsNothing)) return std::move(*failure);
        if constexpr (expectsNothing) {
            return Response{};
        } else {
            try {
                return DecodeResponse<Response>(bytes);
            } catch (const ArchiveException& exception) {
                return Failure{Problem::MalformedResponse, exception.Text()};
            } catch (const ComException& exception) {
                return MalformedVariant(exception.Error());
            }
        }
    }

    // Sends a request whose bytes the caller made: header, request id, fields.
    std::optional<Failure> CallRaw(const RequestBuffer& request, RequestBuffer& response) {
        return Exchange(request, response, false);
    }

private:
    std::optional<Failure> Exchange(const RequestBuffer& request, RequestBuffer& response, bool responseExpected);
    static Failure MalformedVariant(HRESULT result);

    Transport& m_transport;
    std::chrono::milliseconds m_timeout;
};

}  // namespace Zorvex::Client
