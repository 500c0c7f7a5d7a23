// Waking applications that build their accessibility tree only once a client shows interest.
//
// A trigger never fails: what goes wrong is logged, and the answer says only whether a window was recognised.
#pragma once

#include <vector>

#include "Platform/Windows.h"
#include "RuntimeCore/Requests/RequestFlags.h"

namespace Zorvex::N_AATrigger {

// The windows that were triggered in one call. A tree of many child windows costs one trigger an application window.
using TriggeredWindows = std::vector<HWND>;

// True if at least one trigger recognised a window. The window must be null for TriggerScope::TopLevels.
int TriggerAccessibility(HWND hWnd, TriggerScope nScope);

// Offers one window to the triggers below in turn, up to the first that recognises it. Recognised is also a window
// that was triggered before.
int TriggerWidgetAccessibility(HWND hWnd, TriggeredWindows& memo);

// Each answers whether the window is of its kind.
bool ChromiumTrigger(HWND hWnd, TriggeredWindows& memo);
bool AdobeTrigger(HWND hWnd, TriggeredWindows& memo);
bool FirefoxTrigger(HWND hWnd, TriggeredWindows& memo);

// Whether the reader's window shows its document's structure already. The failure when its object can't be had.
HRESULT AdobeIsEnabled(HWND hWnd, bool& bIsEnabled);

// Remembers the window. False if it was there already.
bool AddIfNotTriggered(HWND hWnd, TriggeredWindows& memo);

}  // namespace Zorvex::N_AATrigger
