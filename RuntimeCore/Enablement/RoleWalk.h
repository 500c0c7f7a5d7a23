// What the walks for a browser's dialog and tab have in common: roles by their text.
#pragma once

#include "Common/include/CString.h"
#include "Common/include/TreeWalker/TreeWalker.h"

namespace Zorvex {

// The role text of a node, empty if it can't be read.
CString RoleTextOf(const AANode& node);
// Without regard to case.
bool IsRoleText(const CString& text, const wchar_t* role);
// Writes the role as a line of the walk, indented by its depth.
void LogRole(const CString& text, unsigned depth);

}  // namespace Zorvex
