// Threads, what they wait for, their messages, and the hooks on accessibility events.
#pragma once

#include "Platform/Simulated/Sdk/User.h"

constexpr DWORD WAIT_OBJECT_0 = 0;
constexpr DWORD WAIT_TIMEOUT = 0x102;
constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;

using LPTHREAD_START_ROUTINE = DWORD(WINAPI*)(LPVOID);

// Threads made here run on their own. Their waits follow the virtual clock: it moves to the end of the earliest wait
// once every thread that takes part, which are those made here and those that made one, is waiting.
HANDLE CreateThread(void* attributes, SIZE_T stack, LPTHREAD_START_ROUTINE start, LPVOID parameter, DWORD flags, DWORD* threadId);
HANDLE CreateEventW(void* attributes, BOOL manualReset, BOOL initialState, LPCWSTR name);
BOOL SetEvent(HANDLE event);
DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds);
// Any one of the handles.
DWORD WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL waitAll, DWORD milliseconds);
DWORD MsgWaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL waitAll, DWORD milliseconds, DWORD wakeMask);
// Only to threads made here.
BOOL PostThreadMessageW(DWORD threadId, UINT message, WPARAM wParam, LPARAM lParam);

struct HWINEVENTHOOK__ { int unused; };
using HWINEVENTHOOK = HWINEVENTHOOK__*;
using WINEVENTPROC = void(CALLBACK*)(HWINEVENTHOOK hook, DWORD event, HWND window, LONG objectId, LONG childId, DWORD thread, DWORD time);

constexpr DWORD EVENT_MIN = 0x00000001;
constexpr DWORD EVENT_MAX = 0x7FFFFFFF;
constexpr UINT WINEVENT_OUTOFCONTEXT = 0;
constexpr UINT WINEVENT_INCONTEXT = 4;

// Hooks in context alone: the procedure is called in NotifyWinEvent, on its thread. Id 0 means all.
HWINEVENTHOOK SetWinEventHook(DWORD eventMin, DWORD eventMax, HMODULE module, WINEVENTPROC procedure, DWORD processId, DWORD threadId,
                              DWORD flags);
BOOL UnhookWinEvent(HWINEVENTHOOK hook);
void NotifyWinEvent(DWORD event, HWND window, LONG objectId, LONG childId);
