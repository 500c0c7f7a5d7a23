#include "RuntimeCore/Enablement/AATrigger.h"

#include <algorithm>
#include <exception>
#include <iterator>

#include "Common/include/Log.h"

namespace Zorvex::N_AATrigger {

namespace {

using Trigger = bool (*)(HWND hWnd, TriggeredWindows& memo);
constexpr Trigger Triggers[] = {&ChromiumTrigger, &AdobeTrigger, &FirefoxTrigger};

struct Walk {
    TriggeredWindows memo;
    int recognised = 0;
    std::exception_ptr failure;
};

// The platform calls back through its own frames, which an exception must not cross. Else the walk always goes on.
BOOL CALLBACK VisitWindow(HWND hWnd, LPARAM parameter) {
    Walk& walk = *reinterpret_cast<Walk*>(parameter);
    try {
        if (TriggerWidgetAccessibility(hWnd, walk.memo)) walk.recognised = 1;
        return TRUE;
    } catch (...) {
        walk.failure = std::current_exception();
        return FALSE;
    }
}

int Finish(const Walk& walk) {
    if (walk.failure) std::rethrow_exception(walk.failure);
    return walk.recognised;
}

}  // namespace

bool AddIfNotTriggered(HWND hWnd, TriggeredWindows& memo) {
    if (std::find(memo.begin(), memo.end(), hWnd) != memo.end()) return false;
    memo.push_back(hWnd);
    return true;
}

int TriggerWidgetAccessibility(HWND hWnd, TriggeredWindows& memo) {
    for (int position = 0; position < static_cast<int>(std::size(Triggers)); ++position) {
        if (!Triggers[position](hWnd, memo)) continue;
        LogVerbose("N_AATrigger::TriggerWidgetAccessibility Found accessibility trigger at position #%d for hWnd=0x%p", position, hWnd);
        return 1;
    }
    return 0;
}

int TriggerAccessibility(HWND hWnd, TriggerScope nScope) {
    Walk walk;
    switch (nScope) {
        case TriggerScope::Window: return TriggerWidgetAccessibility(hWnd, walk.memo);
        case TriggerScope::Descendants:
            if (hWnd == nullptr || !::IsWindow(hWnd)) {
                ExpectationNotMet("hWnd != NULL && ::IsWindow(hWnd)",
                                  "N_AATrigger::TriggerAccessibility Invalid HWND for nScope=AA_TRIGGER_DESCENDANTS, hWnd=0x%p", hWnd);
                return 0;
            }
            walk.recognised = TriggerWidgetAccessibility(hWnd, walk.memo);
            ::EnumChildWindows(hWnd, &VisitWindow, reinterpret_cast<LPARAM>(&walk));
            return Finish(walk);
        case TriggerScope::TopLevels:
            if (hWnd != nullptr) {
                ExpectationNotMet("hWnd == NULL",
                                  "N_AATrigger::TriggerAccessibility HWND must be NULL for nScope=AA_TRIGGER_TOP_LEVELS, hWnd=0x%p", hWnd);
                return 0;
            }
            ::EnumWindows(&VisitWindow, reinterpret_cast<LPARAM>(&walk));
            return Finish(walk);
    }
    LogError("N_AATrigger::TriggerAccessibility Invalid scope nScope=0x%x", nScope);
    return 0;
}

}  // namespace Zorvex::N_AATrigger
