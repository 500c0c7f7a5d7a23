// A host that takes the message and does nothing, as if the target had refused the real one.
#include "Platform/Windows.h"

extern "C" __declspec(dllexport) LRESULT CALLBACK VantrelHostHook(int code, WPARAM wParam, LPARAM lParam) {
    return CallNextHookEx(nullptr, code, wParam, lParam);
}
