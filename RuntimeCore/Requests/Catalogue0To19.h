// Requests 0 to 19.
//
// Each request record holds its fields in the order of the wire, behind the request id; its Response those of the
// answer. One list of fields serves reading and writing on both sides. docs/wire-format.md says what they mean.
#pragma once

#include <memory>
#include <vector>

#include "Common/include/ArchiveExtension.h"
#include "RuntimeCore/Requests/CommonResponses.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"

namespace Zorvex {

// ---- 0: The text that a window shows.

struct ScrapeRequest {
    static constexpr RequestId kRequestId = RequestId::Scrape;
    using Response = CaptureResponse;

    HWND window = nullptr;
    std::uint32_t windowKind = 0;  // how the text is captured; 0: the generic way
    RECT rectangle{};  // screen coordinates; used under CaptureByExactRectangle or CaptureClipped
    std::uint32_t flags = 0;  // CaptureFlags

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("window", self.window);
        visit("windowKind", self.windowKind);
        visit("rectangle", self.rectangle);
        visit("flags", self.flags);
    }
};

// ---- 1: The element under a point of the screen.

struct FindElemFromPointResponse {
    bool relatedElementUsed = false;
    AAObjectIdentifier element;  // all zero: nothing was found
    CComVariant role;  // VT_EMPTY: it could not be read
    HWND ownerWindow = nullptr;
    RECT rectangle{};  // screen coordinates

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("relatedElementUsed", self.relatedElementUsed);
        visit("element", self.element);
        visit("role", self.role);
        visit("ownerWindow", self.ownerWindow);
        visit("rectangle", self.rectangle);
    }
};

struct FindElemFromPointRequest {
    static constexpr RequestId kRequestId = RequestId::FindElemFromPoint;
    using Response = FindElemFromPointResponse;

    std::uint32_t clientPid = 0;
    HWND window = nullptr;
    POINT point{};  // screen coordinates
    std::uint32_t flags = 0;  // FromPointFlags
    RelatedElementKind relatedElement = RelatedElementKind::None;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("clientPid", self.clientPid);
        visit("window", self.window);
        visit("point", self.point);
        visit("flags", self.flags);
        visit("relatedElement", self.relatedElement);
    }
};

// ---- 2: The text of one element.

struct GetFullTextRequest {
    static constexpr RequestId kRequestId = RequestId::GetFullText;
    using Response = CaptureResponse;

    AAObjectIdentifier element;
    std::uint32_t flags = 0;  // CaptureFlags

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
        visit("flags", self.flags);
    }
};

// ---- 3: The items of a list, combo box, tree, table or tab list.

struct GetAllItemsResponse {
    SelectionResult status = SelectionResult::Failure;
    std::vector<CString> items;
    HRESULT comboBoxResult = S_OK;  // of opening and closing a combo box

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("status", self.status);
        visit("items", self.items);
        visit("comboBoxResult", self.comboBoxResult);
    }
};

struct GetAllItemsRequest : ElementRequest {
    static constexpr RequestId kRequestId = RequestId::GetAllItems;
    using Response = GetAllItemsResponse;
};

// ---- 4: Puts the focus on an element.

struct SetFocusRequest : ElementRequest {
    static constexpr RequestId kRequestId = RequestId::SetFocus;
    using Response = SuccessResponse;
};

// ---- 5: Whether two identifiers name the same live element.

struct AreEqualRequest {
    static constexpr RequestId kRequestId = RequestId::AreEqual;
    using Response = AnswerResponse;

    AAObjectIdentifier first;
    AAObjectIdentifier second;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("first", self.first);
        visit("second", self.second);
    }
};

// ---- 6: One selector attribute of an element.

struct GetElemAttrRequest : AttributeRequest {
    static constexpr RequestId kRequestId = RequestId::GetElemAttr;
    using Response = AttributeResponse;
};

// ---- 7: The element `offset` places after this one among its siblings.

struct GetSiblingRequest {
    static constexpr RequestId kRequestId = RequestId::GetSibling;
    using Response = IdentifierResponse;

    AAObjectIdentifier element;
    std::int32_t offset = 0;  // negative: before it

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
        visit("offset", self.offset);
    }
};

// ---- 8: The windows below a parent whose accessible name matches.

struct GetWndsByAaNameResponse {
    bool found = false;
    std::vector<HWND> windows;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("found", self.found);
        visit("windows", self.windows);
    }
};

struct GetWndsByAaNameRequest {
    static constexpr RequestId kRequestId = RequestId::GetWndsByAaName;
    using Response = GetWndsByAaNameResponse;

    HWND parent = nullptr;
    std::shared_ptr<StringValue> accessibleName;  // must not be null
    std::shared_ptr<StringValue> windowClass;  // null: any class

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("parent", self.parent);
        visit("accessibleName", self.accessibleName);
        visit("windowClass", self.windowClass);
    }
};

// ---- 9: A table as XML.

struct ExtractTableResponse {
    bool success = false;
    CString xml;
    std::uint32_t sessionFlags = 0;  // ScrapeSessionFlags

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("success", self.success);
        visit("xml", self.xml);
        visit("sessionFlags", self.sessionFlags);
    }
};

struct ExtractTableRequest {
    static constexpr RequestId kRequestId = RequestId::ExtractTable;
    using Response = ExtractTableResponse;

    AAObjectIdentifier element;  // the table, or an element inside it
    std::uint8_t columnNamesFromHeader = 1;  // not 0: take the names from the first row
    std::uint8_t cleanup = 0;  // not 0: only forget the session
    std::int32_t reserved1 = -1;  // the reserved ones are read by nobody
    CString sessionId;
    CString reserved2;
    std::int32_t maxRows = 0;
    std::int32_t reserved3 = -1;
    CString reserved4;
    std::int32_t reserved5 = 0;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
        visit("columnNamesFromHeader", self.columnNamesFromHeader);
        visit("cleanup", self.cleanup);
        visit("reserved1", self.reserved1);
        visit("sessionId", self.sessionId);
        visit("reserved2", self.reserved2);
        visit("maxRows", self.maxRows);
        visit("reserved3", self.reserved3);
        visit("reserved4", self.reserved4);
        visit("reserved5", self.reserved5);
    }
};

// ---- 10: The element that has the focus in a window.

struct GetFocusedElemRequest {
    static constexpr RequestId kRequestId = RequestId::GetFocusedElem;
    using Response = IdentifierResponse;

    std::uint32_t clientPid = 0;
    HWND window = nullptr;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("clientPid", self.clientPid);
        visit("window", self.window);
    }
};

// ---- 11: Selects items of a list by their names.

struct SetSelectedItemsRequest {
    static constexpr RequestId kRequestId = RequestId::SetSelectedItems;
    using Response = SelectionResponse;

    AAObjectIdentifier element;
    std::vector<CString> items;
    bool clearFirst = false;  // drop the selection that is there
    std::uint8_t reserved1 = 0;  // read by nobody
    bool allowDisabled = false;
    bool firstMatchOnly = false;
    std::uint8_t reserved2 = 0;  // read by nobody

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
        visit("items", self.items);
        visit("clearFirst", self.clearFirst);
        visit("reserved1", self.reserved1);
        visit("allowDisabled", self.allowDisabled);
        visit("firstMatchOnly", self.firstMatchOnly);
        visit("reserved2", self.reserved2);
    }
};

// ---- 12: The selected items of a list.

struct GetSelectedItemsResponse {
    SelectionResult status = SelectionResult::Failure;
    std::vector<CString> items;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("status", self.status);
        visit("items", self.items);
    }
};

struct GetSelectedItemsRequest : ElementRequest {
    static constexpr RequestId kRequestId = RequestId::GetSelectedItems;
    using Response = GetSelectedItemsResponse;
};

// ---- 13: Takes the selection off a list.

struct ClearSelectedItemsRequest : ElementRequest {
    static constexpr RequestId kRequestId = RequestId::ClearSelectedItems;
    using Response = SelectionResponse;
};

// ---- 14: Wakes the accessibility of a Chromium window.

struct Ia2TriggerChromiumRequest : WindowRequest {
    static constexpr RequestId kRequestId = RequestId::Ia2TriggerChromium;
    using Response = SuccessResponse;
};

// ---- 15: What a controller needs to write a selector for an element.

struct GetAncestryInfoResponse {
    HRESULT result = S_OK;
    std::vector<AncestryNode> nodes;  // the target first
    // The window at which the way upward goes on; the outermost node's own, or the target's, when it is at its end.
    HWND nextWindow = nullptr;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("result", self.result);
        visit("nodes", self.nodes);
        visit("nextWindow", self.nextWindow);
    }
};

struct GetAncestryInfoRequest {
    static constexpr RequestId kRequestId = RequestId::GetAncestryInfo;
    using Response = GetAncestryInfoResponse;

    AAObjectIdentifier target;
    AAObjectIdentifier relativeAncestor;  // all zero: up to the top
    AncestryInfoOptions options;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("target", self.target);
        visit("relativeAncestor", self.relativeAncestor);
        visit("options", self.options);
    }
};

// ---- 16: The selector attributes of an element.

struct GetSelectorAttrListResponse {
    bool success = false;  // whether the element was valid
    AttributeTexts attributes;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("success", self.success);
        visit("attributes", self.attributes);
    }
};

struct GetSelectorAttrListRequest {
    static constexpr RequestId kRequestId = RequestId::GetSelectorAttrList;
    using Response = GetSelectorAttrListResponse;

    AAObjectIdentifier element;
    std::vector<CString> excludedNames;  // attributes to leave out

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
        visit("excludedNames", self.excludedNames);
    }
};

// ---- 17: The modal dialog of a browser window; the rectangle stands as it is even when none was found.

struct FindBrowserDialogResponse {
    bool found = false;
    RECT rectangle{};  // screen coordinates

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("found", self.found);
        visit("rectangle", self.rectangle);
    }
};

struct FindBrowserDialogRequest : WindowRequest {
    static constexpr RequestId kRequestId = RequestId::FindBrowserDialog;
    using Response = FindBrowserDialogResponse;
};

// ---- 18: One selector attribute of several elements.

struct GetAttrForElementsResponse {
    std::vector<CComVariant> values;  // one an element; VT_EMPTY where it failed

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("values", self.values);
    }
};

struct GetAttrForElementsRequest {
    static constexpr RequestId kRequestId = RequestId::GetAttrForElements;
    using Response = GetAttrForElementsResponse;

    std::vector<AAObjectIdentifier> elements;
    CString attributeName;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("elements", self.elements);
        visit("attributeName", self.attributeName);
    }
};

// ---- 19: The texts of several elements.

struct GetFullTextFromElementsResponse {
    std::vector<CString> texts;  // one an element; empty where it failed

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("texts", self.texts);
    }
};

struct GetFullTextFromElementsRequest {
    static constexpr RequestId kRequestId = RequestId::GetFullTextFromElements;
    using Response = GetFullTextFromElementsResponse;

    std::vector<AAObjectIdentifier> elements;
    std::uint32_t flags = 0;  // CaptureFlags

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("elements", self.elements);
        visit("flags", self.flags);
    }
};

}  // namespace Zorvex
