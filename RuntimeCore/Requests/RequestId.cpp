#include "RuntimeCore/Requests/RequestId.h"

namespace Zorvex {

const char* ToText(RequestId id) {
    switch (id) {
        case RequestId::Scrape: return "RequestId::Scrape";
        case RequestId::FindElemFromPoint: return "RequestId::FindElemFromPoint";
        case RequestId::GetFullText: return "RequestId::GetFullText";
        case RequestId::GetAllItems: return "RequestId::GetAllItems";
        case RequestId::SetFocus: return "RequestId::SetFocus";
        case RequestId::AreEqual: return "RequestId::AreEqual";
        case RequestId::GetElemAttr: return "RequestId::GetElemAttr";
        case RequestId::GetSibling: return "RequestId::GetSibling";
        case RequestId::GetWndsByAaName: return "RequestId::GetWndsByAaName";
        case RequestId::ExtractTable: return "RequestId::ExtractTable";
        case RequestId::GetFocusedElem: return "RequestId::GetFocusedElem";
        case RequestId::SetSelectedItems: return "RequestId::SetSelectedItems";
        case RequestId::GetSelectedItems: return "RequestId::GetSelectedItems";
        case RequestId::ClearSelectedItems: return "RequestId::ClearSelectedItems";
        case RequestId::Ia2TriggerChromium: return "RequestId::Ia2TriggerChromium";
        case RequestId::GetAncestryInfo: return "RequestId::GetAncestryInfo";
        case RequestId::GetSelectorAttrList: return "RequestId::GetSelectorAttrList";
        case RequestId::FindBrowserDialog: return "RequestId::FindBrowserDialog";
        case RequestId::GetAttrForElements: return "RequestId::GetAttrForElements";
        case RequestId::GetFullTextFromElements: return "RequestId::GetFullTextFromElements";
        case RequestId::FindSelectors: return "RequestId::FindSelectors";
        case RequestId::FindElementWithRole: return "RequestId::FindElementWithRole";
        case RequestId::AaNameFromWindow: return "RequestId::AaNameFromWindow";
        case RequestId::GetNextParentForAAHierarchy: return "RequestId::GetNextParentForAAHierarchy";
        case RequestId::TriggerAccessibility: return "RequestId::TriggerAccessibility";
        case RequestId::WriteText: return "RequestId::WriteText";
        case RequestId::GetObjectIdFromWindow: return "RequestId::GetObjectIdFromWindow";
        case RequestId::GetObjectIdFromEvent: return "RequestId::GetObjectIdFromEvent";
        case RequestId::GetIsChecked: return "RequestId::GetIsChecked";
        case RequestId::SetIsChecked: return "RequestId::SetIsChecked";
        case RequestId::ExpandDomAriaCombo: return "RequestId::ExpandDomAriaCombo";
        case RequestId::GetElementIndex: return "RequestId::GetElementIndex";
        case RequestId::IsListViewItem: return "RequestId::IsListViewItem";
        case RequestId::IsValidIdentifier: return "RequestId::IsValidIdentifier";
        case RequestId::DoDefaultAction: return "RequestId::DoDefaultAction";
        case RequestId::ScrollIntoView: return "RequestId::ScrollIntoView";
        case RequestId::GetNativeAttribute: return "RequestId::GetNativeAttribute";
        case RequestId::UnregisterAllContainersByClientPid: return "RequestId::UnregisterAllContainersByClientPid";
        case RequestId::ShouldAddTitleToWndSelector: return "RequestId::ShouldAddTitleToWndSelector";
        case RequestId::ExtractWindowIdFromBrowserMarkerTab: return "RequestId::ExtractWindowIdFromBrowserMarkerTab";
    }
    return "";
}

}  // namespace Zorvex
