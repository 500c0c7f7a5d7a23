// What the system tells of a process.
#pragma once

#include <string>

#include "Controller/Loader/Bitness.h"
#include "Platform/Windows.h"

namespace Zorvex::Loader {

// `process` needs the right of limited queries. Unknown when the system doesn't tell.
Bitness BitnessOfProcess(HANDLE process);

// The file's name without its folder; empty when the system doesn't tell.
std::wstring FileNameOfProcess(HANDLE process);

// With a backslash at its end.
std::wstring FolderOfThisProgram();

// The process that started it, or 0.
DWORD ParentOfProcess(DWORD processId);

}  // namespace Zorvex::Loader
