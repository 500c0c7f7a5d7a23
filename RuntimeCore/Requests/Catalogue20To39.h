// Requests 20 to 39.
//
// Each request record holds its fields in the order of the wire, behind the request id; its Response those of the
// answer. One list of fields serves reading and writing on both sides. docs/wire-format.md says what they mean.
#pragma once

#include <map>
#include <vector>

#include "Common/include/ArchiveExtension.h"
#include "RuntimeCore/Requests/AaCrossProcessSearchResult.h"
#include "RuntimeCore/Requests/CommonResponses.h"
#include "RuntimeCore/Selectors/Unified/SelectorEntry.h"

namespace Zorvex {

// ---- 20: The elements that selectors describe.

struct FindSelectorsResponse {
    bool success = false;  // false: there was no root to search from
    std::vector<Search::CrossProcessSelectorResult> results;  // one a selector, in their order
    std::int64_t sequence = 0;  // above every id in the results

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("success", self.success);
        visit("results", self.results);
        visit("sequence", self.sequence);
    }
};

struct FindSelectorsRequest {
    static constexpr RequestId kRequestId = RequestId::FindSelectors;
    using Response = FindSelectorsResponse;

    AAObjectIdentifier root;
    std::vector<Search::SelectorEntry> selectors;
    std::uint32_t timeoutMilliseconds = 0;
    std::int64_t sequence = 0;  // results get ids above it

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("root", self.root);
        visit("selectors", self.selectors);
        visit("timeoutMilliseconds", self.timeoutMilliseconds);
        visit("sequence", self.sequence);
    }
};

// ---- 21: The first element of a role in a window.

struct FindElementWithRoleRequest {
    static constexpr RequestId kRequestId = RequestId::FindElementWithRole;
    using Response = NameResponse;

    HWND window = nullptr;
    std::int32_t role = 0;
    std::int32_t maximumDepth = 0;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("window", self.window);
        visit("role", self.role);
        visit("maximumDepth", self.maximumDepth);
    }
};

// ---- 22: The accessible name of a window.

struct AaNameFromWindowRequest : WindowRequest {
    static constexpr RequestId kRequestId = RequestId::AaNameFromWindow;
    using Response = NameResponse;
};

// ---- 23: The parent of an element in the hierarchy that selectors use.

struct GetNextParentForAAHierarchyResponse {
    std::int32_t success = 0;  // not 0: the record has a window
    AAObjectIdentifier parent;
    HWND parentWindow = nullptr;
    std::int32_t useWindow = 0;  // not 0: go on with windows at parentWindow

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("success", self.success);
        visit("parent", self.parent);
        visit("parentWindow", self.parentWindow);
        visit("useWindow", self.useWindow);
    }
};

struct GetNextParentForAAHierarchyRequest {
    static constexpr RequestId kRequestId = RequestId::GetNextParentForAAHierarchy;
    using Response = GetNextParentForAAHierarchyResponse;

    AAObjectIdentifier element;
    HierarchyMode mode = HierarchyMode::Mixed;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
        visit("mode", self.mode);
    }
};

// ---- 24: Wakes accessibility in applications that keep it dormant.

struct TriggerAccessibilityRequest {
    static constexpr RequestId kRequestId = RequestId::TriggerAccessibility;
    using Response = SuccessResponse;

    HWND window = nullptr;
    TriggerScope scope = TriggerScope::Window;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("window", self.window);
        visit("scope", self.scope);
    }
};

// ---- 25: Sets the value of an element.

struct WriteTextRequest {
    static constexpr RequestId kRequestId = RequestId::WriteText;
    using Response = SuccessResponse;

    AAObjectIdentifier element;
    CString text;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
        visit("text", self.text);
    }
};

// ---- 26: The element of a window.

struct GetObjectIdFromWindowRequest {
    static constexpr RequestId kRequestId = RequestId::GetObjectIdFromWindow;
    using Response = IdentifierResponse;

    std::uint32_t clientPid = 0;
    HWND window = nullptr;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("clientPid", self.clientPid);
        visit("window", self.window);
    }
};

// ---- 27: The element that an accessibility event names.

struct GetObjectIdFromEventRequest {
    static constexpr RequestId kRequestId = RequestId::GetObjectIdFromEvent;
    using Response = IdentifierResponse;

    std::uint32_t clientPid = 0;
    HWND window = nullptr;
    std::int32_t objectId = 0;
    std::int32_t childId = 0;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("clientPid", self.clientPid);
        visit("window", self.window);
        visit("objectId", self.objectId);
        visit("childId", self.childId);
    }
};

// ---- 28: Whether an element is checked.

struct GetIsCheckedResponse {
    bool success = false;
    bool isChecked = false;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("success", self.success);
        visit("isChecked", self.isChecked);
    }
};

struct GetIsCheckedRequest : ElementRequest {
    static constexpr RequestId kRequestId = RequestId::GetIsChecked;
    using Response = GetIsCheckedResponse;
};

// ---- 29: Checks or unchecks an element.

struct SetIsCheckedRequest {
    static constexpr RequestId kRequestId = RequestId::SetIsChecked;
    using Response = ResultResponse;

    AAObjectIdentifier element;
    bool wantedState = false;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
        visit("wantedState", self.wantedState);
    }
};

// ---- 30: Opens or closes a combo box of a web page.

struct ExpandDomAriaComboRequest {
    static constexpr RequestId kRequestId = RequestId::ExpandDomAriaCombo;
    using Response = ResultResponse;

    AAObjectIdentifier element;
    bool expand = false;  // false: collapse

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
        visit("expand", self.expand);
    }
};

// ---- 31: The place of an element among those below an ancestor that have the same attributes.

struct GetElementIndexResponse {
    std::int32_t index = -1;  // -1: a lookup failed

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("index", self.index);
    }
};

struct GetElementIndexRequest {
    static constexpr RequestId kRequestId = RequestId::GetElementIndex;
    using Response = GetElementIndexResponse;

    HWND ancestorWindow = nullptr;
    AAObjectIdentifier ancestor;
    AAObjectIdentifier target;
    AttributeTexts attributes;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("ancestorWindow", self.ancestorWindow);
        visit("ancestor", self.ancestor);
        visit("target", self.target);
        visit("attributes", self.attributes);
    }
};

// ---- 32: Whether an element is an item of a list view.

struct IsListViewItemRequest : ElementRequest {
    static constexpr RequestId kRequestId = RequestId::IsListViewItem;
    using Response = AnswerResponse;
};

// ---- 33: Whether the cache still knows the element.

struct IsValidIdentifierRequest : ElementRequest {
    static constexpr RequestId kRequestId = RequestId::IsValidIdentifier;
    using Response = AnswerResponse;
};

// ---- 34: Does what a click would do.

struct DoDefaultActionRequest : ElementRequest {
    static constexpr RequestId kRequestId = RequestId::DoDefaultAction;
    using Response = ResultResponse;
};

// ---- 35: Brings an element into view.

struct ScrollIntoViewRequest : ElementRequest {
    static constexpr RequestId kRequestId = RequestId::ScrollIntoView;
    using Response = ResultResponse;
};

// ---- 36: One property of an element under its platform name.

struct GetNativeAttributeRequest : AttributeRequest {
    static constexpr RequestId kRequestId = RequestId::GetNativeAttribute;
    using Response = AttributeResponse;
};

// ---- 37: Forgets every element that was registered for a client.

struct UnregisterAllContainersByClientPidRequest {
    static constexpr RequestId kRequestId = RequestId::UnregisterAllContainersByClientPid;
    using Response = NoResponse;

    std::uint32_t clientPid = 0;
    HWND reserved = nullptr;  // read by nobody

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("clientPid", self.clientPid);
        visit("reserved", self.reserved);
    }
};

// ---- 38: Whether a selector of the window should hold its title.

struct ShouldAddTitleToWndSelectorRequest {
    static constexpr RequestId kRequestId = RequestId::ShouldAddTitleToWndSelector;
    using Response = AnswerResponse;

    std::int32_t reserved = 0;  // read by nobody
    HWND window = nullptr;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("reserved", self.reserved);
        visit("window", self.window);
    }
};

// ---- 39: The ids that a browser extension put into the titles of marker tabs.

struct ExtractWindowIdFromBrowserMarkerTabResponse {
    std::map<HWND, std::int32_t> windowIds;  // -1 for a window that is not valid

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("windowIds", self.windowIds);
    }
};

struct ExtractWindowIdFromBrowserMarkerTabRequest {
    static constexpr RequestId kRequestId = RequestId::ExtractWindowIdFromBrowserMarkerTab;
    using Response = ExtractWindowIdFromBrowserMarkerTabResponse;

    std::vector<HWND> windows;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("windows", self.windows);
    }
};

}  // namespace Zorvex
