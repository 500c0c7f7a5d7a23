// What ends a command early, with the exit code that tells a script why.
#pragma once

#include <stdexcept>
#include <string>

#include "Controller/Client/Connection.h"
#include "Controller/Loader/LoadProblem.h"

namespace Zorvex::Controller {

// docs/command-line.md has this table too.
enum class ExitCode {
    Done = 0,
    NotFound = 1,        // the element isn't there, or the server said no
    WrongArguments = 2,
    TargetProblem = 3,   // no such window or process, or the server couldn't get in, or the target went away
    TimedOut = 4,
};

// The text is UTF-8, for a person.
class CommandFailure : public std::runtime_error {
public:
    CommandFailure(ExitCode code, const std::string& text) : std::runtime_error(text), m_code(code) {}
    explicit CommandFailure(const Client::Failure& failure);
    explicit CommandFailure(const Loader::LoadFailure& failure);

    ExitCode Code() const noexcept { return m_code; }

private:
    ExitCode m_code;
};

}  // namespace Zorvex::Controller
