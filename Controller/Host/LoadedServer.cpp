#include "Controller/Host/LoadedServer.h"

namespace Zorvex::Host {

namespace {

using BesideFunction = void (*)();

// What stays from an earlier request. The host lets itself stay as long as this isn't empty (HostLifetime.cpp).
LoadedServer staying;
wchar_t stayingPath[PathRoom];

void CallBeside(HMODULE library, const char* name) {
    if (!library) return;
    const FARPROC function = GetProcAddress(library, name);
    if (function) reinterpret_cast<BesideFunction>(reinterpret_cast<void*>(function))();
}

void DescribeFailure(Exchange& exchange, const wchar_t* path, DWORD error) {
    exchange.code = error;
    // The system's own message names the module where it can; the path says which of the two it was.
    BoundedText text(exchange.text, TextRoom);
    text.Add(path).Add(L": ");
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                                        text.End(), static_cast<DWORD>(text.Room()), nullptr);
    if (length == 0) {
        text.Add(L"error 0x").AddHex(error, 8);
        return;
    }
    wchar_t* end = text.End() + length;
    while (end > text.End() && (end[-1] == L'\n' || end[-1] == L'\r' || end[-1] == L' ')) *--end = L'\0';
}

HMODULE LoadOne(Exchange& exchange, const wchar_t* path) {
    if (GetFileAttributesW(path) == INVALID_FILE_ATTRIBUTES) {
        exchange.outcome = HostOutcome::LibraryNotFound;
        BoundedText(exchange.text, TextRoom).Add(path);
        return nullptr;
    }
    // The altered search looks beside the library for what it needs, not beside the target.
    const HMODULE module = LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!module) {
        exchange.outcome = HostOutcome::LibraryFailed;
        DescribeFailure(exchange, path, GetLastError());
    }
    return module;
}

void FreeBoth(LoadedServer& loaded) {
    if (loaded.server) FreeLibrary(loaded.server);
    if (loaded.beside) FreeLibrary(loaded.beside);
    loaded = LoadedServer();
}

bool IsStaying(const wchar_t* path) { return staying.server && lstrcmpiW(stayingPath, path) == 0; }

}  // namespace

bool LoadServer(Exchange& exchange, LoadedServer& loaded) {
    if (exchange.besidePath[0] != L'\0') {
        const bool started = IsStaying(exchange.serverPath) && staying.beside;
        loaded.beside = LoadOne(exchange, exchange.besidePath);
        if (!loaded.beside) return false;
        if (!started) CallBeside(loaded.beside, "StartBeside");
    }
    loaded.server = LoadOne(exchange, exchange.serverPath);
    if (loaded.server) {
        const FARPROC function = GetProcAddress(loaded.server, "ExecuteAa");
        loaded.execute = reinterpret_cast<ExecuteFunction>(reinterpret_cast<void*>(function));
        if (loaded.execute) return true;
        exchange.outcome = HostOutcome::ExportMissing;
        BoundedText(exchange.text, TextRoom).Add(exchange.serverPath);
    }
    if (loaded.beside && !(IsStaying(exchange.serverPath) && staying.beside)) CallBeside(loaded.beside, "StopBeside");
    FreeBoth(loaded);
    return false;
}

void ReleaseServer(const Exchange& exchange, LoadedServer& loaded) {
    const bool stays = IsStaying(exchange.serverPath);
    if (exchange.policy == ServerPolicy::Stay) {
        if (!stays) {
            // Another file than the one that stayed: the newer one takes its place.
            UnloadStayingServer();
            staying = loaded;
            BoundedText(stayingPath, PathRoom).Add(exchange.serverPath);
            loaded = LoadedServer();
            return;
        }
        if (loaded.beside && !staying.beside) {
            staying.beside = loaded.beside;
            loaded.beside = nullptr;
        }
        FreeBoth(loaded);
        return;
    }
    if (loaded.beside && !(stays && staying.beside)) CallBeside(loaded.beside, "StopBeside");
    FreeBoth(loaded);
    if (exchange.policy == ServerPolicy::Go) UnloadStayingServer();
}

bool ServerStays() { return staying.server != nullptr; }

bool UnloadStayingServer() {
    if (!staying.server) return false;
    CallBeside(staying.beside, "StopBeside");
    FreeBoth(staying);
    stayingPath[0] = L'\0';
    return true;
}

}  // namespace Zorvex::Host
