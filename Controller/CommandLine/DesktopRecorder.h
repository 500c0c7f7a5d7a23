// A window of the system, or of a desktop file, as a desktop file.
#pragma once

#include <cstddef>
#include <string>

#include "Controller/CommandLine/Session.h"

namespace Zorvex::Controller {

struct Recording {
    std::string text;  // the file, docs/desktop-files.md
    std::size_t windows = 0;
    std::size_t elements = 0;
};

// The session's window with everything in it. Loading the text gives the same tree of elements. Child windows that no
// element stands for (hidden ones, as a rule) are left out: a desktop would show them at the end of their parent's client.
Recording RecordDesktop(Session& session);

}  // namespace Zorvex::Controller
