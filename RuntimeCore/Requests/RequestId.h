// The kinds of request.
#pragma once

#include <cstdint>

namespace Zorvex {

enum class RequestId : std::uint32_t {
    Scrape = 0,
    FindElemFromPoint = 1,
    GetFullText = 2,
    GetAllItems = 3,
    SetFocus = 4,
    AreEqual = 5,
    GetElemAttr = 6,
    GetSibling = 7,
    GetWndsByAaName = 8,
    ExtractTable = 9,
    GetFocusedElem = 10,
    SetSelectedItems = 11,
    GetSelectedItems = 12,
    ClearSelectedItems = 13,
    Ia2TriggerChromium = 14,
    GetAncestryInfo = 15,
    GetSelectorAttrList = 16,
    FindBrowserDialog = 17,
    GetAttrForElements = 18,
    GetFullTextFromElements = 19,
    FindSelectors = 20,
    FindElementWithRole = 21,
    AaNameFromWindow = 22,
    GetNextParentForAAHierarchy = 23,
    TriggerAccessibility = 24,
    WriteText = 25,
    GetObjectIdFromWindow = 26,
    GetObjectIdFromEvent = 27,
    GetIsChecked = 28,
    SetIsChecked = 29,
    ExpandDomAriaCombo = 30,
    GetElementIndex = 31,
    IsListViewItem = 32,
    IsValidIdentifier = 33,
    DoDefaultAction = 34,
    ScrollIntoView = 35,
    GetNativeAttribute = 36,
    UnregisterAllContainersByClientPid = 37,
    ShouldAddTitleToWndSelector = 38,
    ExtractWindowIdFromBrowserMarkerTab = 39,
};

inline constexpr std::uint32_t kRequestCount = 40;

// "RequestId::Scrape" and so on; an empty text for any other number.
const char* ToText(RequestId id);

}  // namespace Zorvex
