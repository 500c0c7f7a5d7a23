// Why a request didn't come back from a target. Each entry is something else for a person to do; docs/loading.md
// says what.
#pragma once

#include <string>

namespace Zorvex::Loader {

enum class LoadProblem {
    NoSuchWindow,         // no window of this handle or title
    NoSuchProcess,        // no process of this id, or it has no window
    WrongBitness,         // this controller's word size isn't the target's
    AccessDenied,         // the target runs under another user or with more rights
    TargetHung,           // the window's thread took no message before the deadline
    DeadlinePassed,       // the request was begun and hadn't ended at the deadline
    TargetBusy,           // another controller's requests kept the target occupied until the deadline
    TargetGone,           // the process, or the window's thread, ended before the answer
    LibraryNotFound,      // a library isn't where it should be
    LibraryFailed,        // a library is there and the system didn't load it
    HostNotLoaded,        // the window's thread took the message, but the host wasn't in it
    ServerException,      // an exception came out of the server
    ServerFault,          // a hardware fault in the server; the target lives, the server's state is doubtful
    AnswerTooLarge,       // the response doesn't fit into the memory set aside for it
    NoResponse,           // the server answered nothing
    LaunchFailed,         // the command couldn't be started
    NoWindowInTime,       // the started command showed no window before the limit
    Cancelled,            // the caller asked to stop
    NotOnThisSystem,      // there is no loading here
    Failed,               // anything else; the text says which call and why
};

// "target hung" and so on; an empty text for any other number.
const char* ToText(LoadProblem problem);

struct LoadFailure {
    LoadProblem problem = LoadProblem::Failed;
    std::string detail;  // UTF-8, for a person; may be empty

    // One line of both.
    std::string ToString() const;
};

}  // namespace Zorvex::Loader
