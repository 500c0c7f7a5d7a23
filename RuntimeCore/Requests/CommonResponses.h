// Requests and responses that several kinds share.
#pragma once

#include "Common/include/CComVariant.h"
#include "RuntimeCore/Requests/Records.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "RuntimeCore/Requests/RequestId.h"

namespace Zorvex {

// A request that names one element and nothing else.
struct ElementRequest {
    AAObjectIdentifier element;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
    }
};

// A request that names one window and nothing else.
struct WindowRequest {
    HWND window = nullptr;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("window", self.window);
    }
};

// A request about one attribute of one element.
struct AttributeRequest {
    AAObjectIdentifier element;
    CString attributeName;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
        visit("attributeName", self.attributeName);
    }
};

struct SuccessResponse {
    bool success = false;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("success", self.success);
    }
};

// A plain answer: yes or no.
struct AnswerResponse {
    bool answer = false;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("answer", self.answer);
    }
};

struct ResultResponse {
    HRESULT result = S_OK;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("result", self.result);
    }
};

struct IdentifierResponse {
    AAObjectIdentifier element;  // all zero: none

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("element", self.element);
    }
};

struct NameResponse {
    bool found = false;
    CString name;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("found", self.found);
        visit("name", self.name);
    }
};

struct AttributeResponse {
    HRESULT result = S_OK;
    CComVariant value;  // VT_EMPTY when the result is a failure

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("result", self.result);
        visit("value", self.value);
    }
};

struct SelectionResponse {
    SelectionResult status = SelectionResult::Failure;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("status", self.status);
    }
};

// The text of a window or an element.
struct CaptureResponse {
    bool success = false;
    CString text;
    std::vector<HighlightInfo> lines;  // filled under CaptureHighlightInfo

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("success", self.success);
        visit("text", self.text);
        visit("lines", self.lines);
    }
};

// Nothing comes back: the caller's buffer stays as it was.
struct NoResponse {
    template <class Self, class Visitor>
    static void Fields(Self&, Visitor&&) {}
};

}  // namespace Zorvex
