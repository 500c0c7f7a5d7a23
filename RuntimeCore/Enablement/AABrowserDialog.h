// The modal dialog that a browser shows over its page.
#pragma once

#include "Common/include/TreeWalker/AANode.h"
#include "Platform/Windows.h"

namespace Zorvex {

// The first node with that role text in pre-order, no more than three levels below the root. An empty node if there
// is none.
AANode FindElemWithRole(const AANode& root, const wchar_t* role);
AANode FindElemWithRole(HWND hWnd, const wchar_t* role);

// An empty node if the window shows no dialog.
AANode FindChromiumBrowserDialog(HWND hWnd);
// Pages aren't searched, and a dialog that is part of one isn't taken.
AANode FindFirefoxBrowserDialog(HWND hWnd);

}  // namespace Zorvex
