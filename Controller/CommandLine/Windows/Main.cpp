// The program's start on Windows: arguments come as UTF-16, and the console is told that UTF-8 follows.
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <windows.h>

#include <iostream>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"

int wmain(int argc, wchar_t** argv) {
    SetConsoleOutputCP(CP_UTF8);
    // Line ends are a matter of each format, not of the system.
    _setmode(_fileno(stdout), _O_BINARY);
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.push_back(Zorvex::NarrowText(argv[i]));
    return Zorvex::Controller::RunCommandLine(std::move(arguments), std::cout, std::cerr);
}
