// What the accessible nodes of one ancestry share: fixed by the first of them.
#pragma once

#include "Platform/Windows.h"
#include "RuntimeCore/Selectors/Policy/ContextData.h"

namespace Zorvex::Generation {

struct AaContextData {
    bool strictOwner = false;  // AncestryStrictOwner
    bool aaOnlyMode = false;   // AncestryAaOnlyMode
    HWND topLevelWindow = nullptr;  // of the first node
    HWND aaWindow = nullptr;  // the first owner window that a climb learnt; null until then
    bool targetIsWpfMenuItem = false;
};

template <>
struct ContextDataName<AaContextData> {
    static constexpr const char* value = "AaContextData";
};

}  // namespace Zorvex::Generation
