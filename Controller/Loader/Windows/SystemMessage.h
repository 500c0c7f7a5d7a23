// Texts of the system's errors, in UTF-8.
#pragma once

#include <string>

#include "Controller/Loader/LoadProblem.h"
#include "Platform/Windows.h"

namespace Zorvex::Loader {

// The system's text for an error number, without line ends; the number itself where there is none.
std::string SystemMessage(DWORD error);

// "call: message (number)".
LoadFailure CallFailure(LoadProblem problem, const char* call, DWORD error);

}  // namespace Zorvex::Loader
