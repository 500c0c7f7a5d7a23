#include "Controller/Loader/LoadProblem.h"

namespace Zorvex::Loader {

const char* ToText(LoadProblem problem) {
    switch (problem) {
        case LoadProblem::NoSuchWindow: return "no such window";
        case LoadProblem::NoSuchProcess: return "no such process";
        case LoadProblem::WrongBitness: return "wrong bitness";
        case LoadProblem::AccessDenied: return "access denied";
        case LoadProblem::TargetHung: return "target hung";
        case LoadProblem::DeadlinePassed: return "deadline passed";
        case LoadProblem::TargetBusy: return "target busy";
        case LoadProblem::TargetGone: return "target gone";
        case LoadProblem::LibraryNotFound: return "library not found";
        case LoadProblem::LibraryFailed: return "library failed to load";
        case LoadProblem::HostNotLoaded: return "host not loaded";
        case LoadProblem::ServerException: return "exception out of the server";
        case LoadProblem::ServerFault: return "fault in the server";
        case LoadProblem::AnswerTooLarge: return "answer too large";
        case LoadProblem::NoResponse: return "no response";
        case LoadProblem::LaunchFailed: return "launch failed";
        case LoadProblem::NoWindowInTime: return "no window in time";
        case LoadProblem::Cancelled: return "cancelled";
        case LoadProblem::NotOnThisSystem: return "not on this system";
        case LoadProblem::Failed: return "failed";
    }
    return "";
}

std::string LoadFailure::ToString() const {
    std::string text = ToText(problem);
    if (!detail.empty()) text += ": " + detail;
    return text;
}

}  // namespace Zorvex::Loader
