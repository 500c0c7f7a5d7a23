#include <iostream>

#include "Controller/CommandLine/Commands.h"

int main(int argc, char** argv) {
    return Zorvex::Controller::RunCommandLine(std::vector<std::string>(argv + (argc ? 1 : 0), argv + argc), std::cout, std::cerr);
}
