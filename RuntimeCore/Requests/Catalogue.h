// The whole catalogue: all requests with their responses, by number.
#pragma once

#include <tuple>
#include <utility>

#include "RuntimeCore/Requests/Catalogue0To19.h"
#include "RuntimeCore/Requests/Catalogue20To39.h"

namespace Zorvex {

// The place in the list is the number of the request.
using AllRequests = std::tuple<
    ScrapeRequest,
    FindElemFromPointRequest,
    GetFullTextRequest,
    GetAllItemsRequest,
    SetFocusRequest,
    AreEqualRequest,
    GetElemAttrRequest,
    GetSiblingRequest,
    GetWndsByAaNameRequest,
    ExtractTableRequest,
    GetFocusedElemRequest,
    SetSelectedItemsRequest,
    GetSelectedItemsRequest,
    ClearSelectedItemsRequest,
    Ia2TriggerChromiumRequest,
    GetAncestryInfoRequest,
    GetSelectorAttrListRequest,
    FindBrowserDialogRequest,
    GetAttrForElementsRequest,
    GetFullTextFromElementsRequest,
    FindSelectorsRequest,
    FindElementWithRoleRequest,
    AaNameFromWindowRequest,
    GetNextParentForAAHierarchyRequest,
    TriggerAccessibilityRequest,
    WriteTextRequest,
    GetObjectIdFromWindowRequest,
    GetObjectIdFromEventRequest,
    GetIsCheckedRequest,
    SetIsCheckedRequest,
    ExpandDomAriaComboRequest,
    GetElementIndexRequest,
    IsListViewItemRequest,
    IsValidIdentifierRequest,
    DoDefaultActionRequest,
    ScrollIntoViewRequest,
    GetNativeAttributeRequest,
    UnregisterAllContainersByClientPidRequest,
    ShouldAddTitleToWndSelectorRequest,
    ExtractWindowIdFromBrowserMarkerTabRequest>;

static_assert(std::tuple_size_v<AllRequests> == kRequestCount);

template <RequestId id>
using RequestOf = std::tuple_element_t<static_cast<std::size_t>(id), AllRequests>;

static_assert([]<std::size_t... number>(std::index_sequence<number...>) {
    return ((std::tuple_element_t<number, AllRequests>::kRequestId == static_cast<RequestId>(number)) && ...);
}(std::make_index_sequence<kRequestCount>()), "a record stands at the place of another's number");

// Calls `call.template operator()<Request>()` for the record of `id`. False if there is no such request.
template <class Call>
bool WithRequestType(RequestId id, Call&& call) {
    return [&]<std::size_t... number>(std::index_sequence<number...>) {
        return ((static_cast<RequestId>(number) == id
                     ? (call.template operator()<std::tuple_element_t<number, AllRequests>>(), true)
                     : false) || ...);
    }(std::make_index_sequence<kRequestCount>());
}

// Reads the fields behind the id. Bytes behind the last field are left alone. Throws ArchiveException.
template <class Record>
Record ReadRecord(Archive& archive) {
    Record record;
    readField(archive, record);
    return record;
}

template <class Record>
void WriteRecord(Archive& archive, const Record& record) {
    writeField(archive, record);
}

// A whole request: header, id, fields.
template <class Request>
RequestBuffer EncodeRequest(const Request& request) {
    Archive archive;
    archive.write(static_cast<std::uint32_t>(Request::kRequestId));
    writeField(archive, request);
    return archive.TakeBuffer();
}

// A whole response. Throws ArchiveException.
template <class Response>
Response DecodeResponse(const RequestBuffer& bytes) {
    Archive archive(bytes);
    return ReadRecord<Response>(archive);
}

}  // namespace Zorvex
