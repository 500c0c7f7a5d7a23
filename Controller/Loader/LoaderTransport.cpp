#include "Controller/Loader/LoaderTransport.h"

namespace Zorvex::Loader {

namespace {

using Client::Problem;

Problem ProblemOf(LoadProblem problem) {
    switch (problem) {
        case LoadProblem::NoSuchWindow:
        case LoadProblem::NoSuchProcess: return Problem::NoSuchTarget;
        case LoadProblem::WrongBitness: return Problem::WrongBitness;
        case LoadProblem::AccessDenied: return Problem::AccessDenied;
        case LoadProblem::TargetHung: return Problem::TargetHung;
        case LoadProblem::DeadlinePassed:
        case LoadProblem::TargetBusy:
        case LoadProblem::Cancelled: return Problem::TimedOut;
        case LoadProblem::TargetGone: return Problem::TargetGone;
        case LoadProblem::ServerException:
        case LoadProblem::ServerFault: return Problem::ServerException;
        case LoadProblem::NoResponse: return Problem::NoResponse;
        case LoadProblem::LibraryNotFound:
        case LoadProblem::LibraryFailed:
        case LoadProblem::HostNotLoaded:
        case LoadProblem::AnswerTooLarge:
        case LoadProblem::LaunchFailed:
        case LoadProblem::NoWindowInTime:
        case LoadProblem::NotOnThisSystem:
        case LoadProblem::Failed: break;
    }
    return Problem::LoadFailed;
}

// Where the client has one word for several of the loader's, the loader's is part of the text.
bool NeedsOwnWord(LoadProblem problem) {
    switch (problem) {
        case LoadProblem::WrongBitness:
        case LoadProblem::AccessDenied:
        case LoadProblem::TargetHung:
        case LoadProblem::DeadlinePassed:
        case LoadProblem::TargetGone:
        case LoadProblem::ServerException:
        case LoadProblem::NoResponse: return false;
        default: return true;
    }
}

}  // namespace

Client::Failure ToClientFailure(const LoadFailure& failure) {
    return {ProblemOf(failure.problem), NeedsOwnWord(failure.problem) ? failure.ToString() : failure.detail};
}

std::optional<Client::Failure> LoaderTransport::Send(const RequestBuffer& request, RequestBuffer& response,
                                                     std::chrono::milliseconds timeout) {
    const auto answer = m_target->Execute({request.data(), request.size()}, timeout);
    if (answer) {
        response.append(answer->response.data(), answer->response.size());
        return std::nullopt;
    }
    // To answer nothing is right for some requests; the client knows for which.
    if (answer.Error().problem == LoadProblem::NoResponse) return std::nullopt;
    return ToClientFailure(answer.Error());
}

}  // namespace Zorvex::Loader
