// Desktop files: a desktop as JSON text (docs/desktop-files.md).
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Platform/Simulated/Desktop.h"

namespace Simulated {

// The message begins with the place: "line 3, column 9: ..." where the text is no JSON, else
// "windows[0].objects.client.children[2].role: unknown role \"buton\"".
struct DesktopFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Throws DesktopFileError. A text that nests deeper than 1,000 levels is refused.
DesktopModel ReadDesktopModel(std::string_view json);
// The model, built.
std::shared_ptr<Desktop> ReadDesktop(std::string_view json);

// The text of a file that reads as the same desktop. Made-up windows and elements are left out, handles and ids
// are written as they are. Lone halves of surrogate pairs become U+FFFD.
std::string WriteDesktop(const DesktopModel& model);

}  // namespace Simulated
