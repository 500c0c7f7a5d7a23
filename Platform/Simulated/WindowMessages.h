// How a described window answers messages: the same under the simulated functions and in a serving program.
#pragma once

#include "Platform/Simulated/Desktop.h"

namespace Simulated {

// Answers what the window's file entry tells: an explicit answer by message number first, then its text, its list
// box, its list view and that one's header. False: nothing is known of the message. The pointers in the
// parameters must be those that the message asks for. Called under the desktop's lock.
bool AnswerMessage(Desktop& desktop, Window& window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer);

}  // namespace Simulated
