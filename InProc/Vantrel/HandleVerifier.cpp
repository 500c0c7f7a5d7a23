#include "InProc/Vantrel/ExecuteAa.h"

// Every handle here has an owner in the scope that opened it, so there is nothing to verify and no verifier to hand
// out. The export is there for hosts that look it up by name.
void* GetHandleVerifier() { return nullptr; }
