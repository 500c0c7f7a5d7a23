// The one working door of the library.
#pragma once

#include "Common/include/HeapAllocator.h"

extern "C" {

// Serves one request, synchronously, on the caller's thread.
//
// `inBuffer` holds the request and is only read. `outBuffer` receives the response: the block that it held is given
// back to the process heap, and the caller owns the new one. Where there is no response (a request that can't be
// read, an unknown one, or number 37), `outBuffer` isn't touched. Neither may be null.
//
// Exceptions leave through here: ArchiveException for a buffer that is no archive or has no request number, and
// whatever exhausted resources raise.
void ExecuteAa(const Zorvex::RequestBuffer* inBuffer, Zorvex::RequestBuffer* outBuffer);

// The handle tracking of the process; takes no part in requests.
void* GetHandleVerifier();
}
