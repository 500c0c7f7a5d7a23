// Records that requests and responses are made of, beside those of the search.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/Requests/AAObjectIdentifier.h"

namespace Zorvex {

// One line of captured text and its place in screen pixels.
struct HighlightInfo {
    static constexpr std::size_t kMinimumWireSize = 25;

    CString text;  // without its line end
    RECT rectangle{};

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("text", self.text);
        visit("rectangle", self.rectangle);
    }
};

// Names and values of attributes, in code-unit order of the names.
using AttributeTexts = std::map<CString, CString>;

// One node of an ancestry.
struct AncestryNode {
    AAObjectIdentifier node;
    bool included = false;            // belongs into the selector
    std::int32_t selectorIndex = -1;  // -1: not included, or not computed
    AttributeTexts minimalAttributes;
    AttributeTexts allAttributes;              // filled under AncestryAllAttributes
    std::vector<AAObjectIdentifier> siblings;  // filled under AncestrySiblings
    std::int32_t indexInSiblings = 0;          // from 0

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("node", self.node);
        visit("included", self.included);
        visit("selectorIndex", self.selectorIndex);
        visit("minimalAttributes", self.minimalAttributes);
        visit("allAttributes", self.allAttributes);
        visit("siblings", self.siblings);
        visit("indexInSiblings", self.indexInSiblings);
    }
};

// How an ancestry is gathered. The policy is JSON text here; whoever evaluates it parses it.
struct AncestryInfoOptions {
    std::uint32_t flags = 0;  // AncestryFlags
    std::uint32_t timeoutMilliseconds = 0;
    CString policy;  // empty: none

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("flags", self.flags);
        visit("timeoutMilliseconds", self.timeoutMilliseconds);
        visit("policy", self.policy);
    }
};

}  // namespace Zorvex
