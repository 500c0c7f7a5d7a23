#include "InProc/Vantrel/Dispatch.h"

#include "Common/include/Log.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "InProc/Vantrel/AncestryRequest.h"
#include "InProc/Vantrel/CheckStateRequests.h"
#include "InProc/Vantrel/DomAriaComboRequest.h"
#include "InProc/Vantrel/ElementActions.h"
#include "InProc/Vantrel/ElementAttributeRequests.h"
#include "InProc/Vantrel/ElementFromPoint.h"
#include "InProc/Vantrel/ElementLookup.h"
#include "InProc/Vantrel/EnablementRequests.h"
#include "InProc/Vantrel/ExtractTable.h"
#include "InProc/Vantrel/FindSelectors.h"
#include "InProc/Vantrel/FocusedElement.h"
#include "InProc/Vantrel/GenerationRequests.h"
#include "InProc/Vantrel/InitCom.h"
#include "InProc/Vantrel/ItemRequests.h"
#include "InProc/Vantrel/TextCaptureRequests.h"
#include "InProc/Vantrel/WindowLookup.h"
#include "RuntimeCore/Requests/Catalogue.h"

namespace Zorvex {

namespace {

// Reads the request's record, calls the logic and writes the response's record.
template <class Request, class Response>
std::optional<Archive> Serve(Archive& archive, Response (*logic)(const Request&)) {
    static_assert(std::is_same_v<Response, typename Request::Response>);
    const auto request = ReadRecord<Request>(archive);
    const Response response = logic(request);
    Archive result(Archive::kResponsePayloadHint);
    WriteRecord(result, response);
    return result;
}

// The one request without a response.
std::optional<Archive> Unregister(Archive& archive) {
    const auto request = ReadRecord<UnregisterAllContainersByClientPidRequest>(archive);
    AAContainerCache::Instance().UnregisterAllContainersByClientPid(request.clientPid);
    return std::nullopt;
}

std::optional<Archive> DispatchRequest(RequestId id, Archive& archive) {
    switch (id) {
        case RequestId::Scrape: return Serve(archive, ScrapeImpl);
        case RequestId::FindElemFromPoint: return Serve(archive, FindAAElementFromPointImpl);
        case RequestId::GetFullText: return Serve(archive, GetFullTextFromAAElementImpl);
        case RequestId::GetAllItems: return Serve(archive, GetAllItemsImpl);
        case RequestId::SetFocus: return Serve(archive, SetFocusImpl);
        case RequestId::AreEqual: return Serve(archive, AreEqualImpl);
        case RequestId::GetElemAttr: return Serve(archive, GetAAElemAttributeImpl);
        case RequestId::GetSibling: return Serve(archive, GetSiblingImpl);
        case RequestId::GetWndsByAaName: return Serve(archive, GetWndsByAaNameImpl);
        case RequestId::ExtractTable: return Serve(archive, ExtractTableImpl);
        case RequestId::GetFocusedElem: return Serve(archive, GetFocusedElementImpl);
        case RequestId::SetSelectedItems: return Serve(archive, SetSelectedItemsImpl);
        case RequestId::GetSelectedItems: return Serve(archive, GetSelectedItemsImpl);
        case RequestId::ClearSelectedItems: return Serve(archive, ClearSelectedItemsImpl);
        case RequestId::Ia2TriggerChromium: return Serve(archive, Ia2TriggerChromiumImpl);
        case RequestId::GetAncestryInfo: return Serve(archive, GetAncestryInfoAAImpl);
        case RequestId::GetSelectorAttrList: return Serve(archive, GetSelectorAttrListAAImpl);
        case RequestId::FindBrowserDialog: return Serve(archive, FindBrowserDialogImpl);
        case RequestId::GetAttrForElements: return Serve(archive, GetAttributeForAAElementsImpl);
        case RequestId::GetFullTextFromElements: return Serve(archive, GetFullTextFromMultipleAAElementsImpl);
        case RequestId::FindSelectors: return Serve(archive, FindSelectorsImpl);
        case RequestId::FindElementWithRole: return Serve(archive, FindElementWithRoleImpl);
        case RequestId::AaNameFromWindow: return Serve(archive, AaNameFromWindowImpl);
        case RequestId::GetNextParentForAAHierarchy: return Serve(archive, GetNextParentForAAHierarchyImpl);
        case RequestId::WriteText: return Serve(archive, WriteTextImpl);
        case RequestId::TriggerAccessibility: return Serve(archive, TriggerAccessibilityImpl);
        case RequestId::GetObjectIdFromWindow: return Serve(archive, GetObjectIdFromWindowImpl);
        case RequestId::GetObjectIdFromEvent: return Serve(archive, GetObjectIdFromEventImpl);
        case RequestId::GetIsChecked: return Serve(archive, GetIsCheckedImpl);
        case RequestId::SetIsChecked: return Serve(archive, SetIsCheckedImpl);
        case RequestId::ExpandDomAriaCombo: return Serve(archive, ExpandDomAriaComboImpl);
        case RequestId::GetElementIndex: return Serve(archive, GetElementIndexImpl);
        case RequestId::IsListViewItem: return Serve(archive, IsListViewItemImpl);
        case RequestId::IsValidIdentifier: return Serve(archive, IsValidIdentifierImpl);
        case RequestId::DoDefaultAction: return Serve(archive, DoDefaultActionImpl);
        case RequestId::ScrollIntoView: return Serve(archive, ScrollIntoViewImpl);
        case RequestId::GetNativeAttribute: return Serve(archive, GetNativeAttributeImpl);
        case RequestId::UnregisterAllContainersByClientPid: return Unregister(archive);
        case RequestId::ShouldAddTitleToWndSelector: return Serve(archive, ShouldAddTitleToWndSelectorImpl);
        case RequestId::ExtractWindowIdFromBrowserMarkerTab:
            return Serve(archive, ExtractWindowIdFromBrowserMarkerTabImpl);
        default: return std::nullopt;
    }
}

}  // namespace

std::optional<Archive> Dispatch(Archive& archive) {
    // First of all, before COM is touched and outside the guard below.
    std::uint32_t number = 0;
    archive.read(number);
    const auto id = static_cast<RequestId>(number);
    InitCOM();
    if (ShouldLog(Severity::Verbose)) LogStream(Severity::Verbose) << "reqType = " << ToText(id);
    try {
        return DispatchRequest(id, archive);
    } catch (const ArchiveException& exception) {
        // This alone is caught: whatever else is raised is the caller's to see.
        if (ShouldLog(Severity::Error)) LogStream(Severity::Error) << "Failed to dispatch request: " << exception.Text();
        return std::nullopt;
    }
}

}  // namespace Zorvex
