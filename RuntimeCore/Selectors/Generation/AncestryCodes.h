// Result codes and bounds of the walk, beside S_OK, E_INVALIDARG and E_FAIL.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex::Generation {

constexpr HRESULT AncestryInvalidNode = static_cast<HRESULT>(0x80040215u);  // no element, or the relative ancestor was missed
constexpr HRESULT AncestryTimeout = static_cast<HRESULT>(0x80040226u);
constexpr HRESULT AncestryPaused = static_cast<HRESULT>(0x8004031Eu);  // the next node lies outside what can be read here

// A server whose parents go round in a circle would keep a walk busy, and its memory growing, for all of its time: a
// walk with more ancestors than this fails with AncestryInvalidNode.
constexpr int MaximumAncestors = 10'000;

}  // namespace Zorvex::Generation
