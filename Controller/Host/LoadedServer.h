// The server, and the library beside it, as they are loaded in this process.
#pragma once

#include "Controller/Host/HostProtocol.h"

namespace Zorvex::Host {

// The contract of the server's export: two buffers of three pointers each, blocks from the process heap.
struct RawBuffer {
    std::uint8_t* begin = nullptr;
    std::uint8_t* end = nullptr;
    std::uint8_t* capacityEnd = nullptr;
};
using ExecuteFunction = void (*)(const RawBuffer* request, RawBuffer* response);

// References to the libraries of one request. No destructor: a fault skips it, so giving back is a call of its own.
struct LoadedServer {
    HMODULE server = nullptr;
    HMODULE beside = nullptr;
    ExecuteFunction execute = nullptr;
};

// Loads both libraries of `exchange`. False with outcome, code and text set when one can't be had; nothing stays
// loaded then.
bool LoadServer(Exchange& exchange, LoadedServer& loaded);

// Gives the references of one request back by the request's policy.
void ReleaseServer(const Exchange& exchange, LoadedServer& loaded);

// True if a server was let to stay, whichever path it has.
bool ServerStays();

// Unloads the server that was let to stay. True if there was one.
bool UnloadStayingServer();

}  // namespace Zorvex::Host
