#include "InProc/Vantrel/ExecuteAa.h"

#include <utility>

#include "InProc/Vantrel/Dispatch.h"

void ExecuteAa(const Zorvex::RequestBuffer* inBuffer, Zorvex::RequestBuffer* outBuffer) {
    Zorvex::Archive request(*inBuffer);
    if (std::optional<Zorvex::Archive> response = Zorvex::Dispatch(request)) *outBuffer = response->TakeBuffer();
}
