#include "Controller/CommandLine/CommandFailure.h"

namespace Zorvex::Controller {

namespace {

ExitCode CodeOf(Client::Problem problem) {
    switch (problem) {
        case Client::Problem::TimedOut: return ExitCode::TimedOut;
        case Client::Problem::NoResponse: return ExitCode::NotFound;
        default: return ExitCode::TargetProblem;
    }
}

ExitCode CodeOf(Loader::LoadProblem problem) {
    switch (problem) {
        case Loader::LoadProblem::DeadlinePassed:
        case Loader::LoadProblem::TargetBusy:
        case Loader::LoadProblem::NoWindowInTime: return ExitCode::TimedOut;
        case Loader::LoadProblem::NoResponse: return ExitCode::NotFound;
        default: return ExitCode::TargetProblem;
    }
}

}  // namespace

CommandFailure::CommandFailure(const Client::Failure& failure) : CommandFailure(CodeOf(failure.problem), failure.ToString()) {}
CommandFailure::CommandFailure(const Loader::LoadFailure& failure) : CommandFailure(CodeOf(failure.problem), failure.ToString()) {}

}  // namespace Zorvex::Controller
