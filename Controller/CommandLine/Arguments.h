// The command line's arguments, read.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/Options.h"

namespace Zorvex::Controller {

// A text for the person in place of a command: help, the version, or what is wrong with the arguments.
struct ArgumentsText {
    ExitCode code = ExitCode::Done;
    std::string text;
};

// `arguments` are UTF-8, without the program's name.
std::variant<Invocation, ArgumentsText> ReadArguments(std::vector<std::string> arguments);

}  // namespace Zorvex::Controller
