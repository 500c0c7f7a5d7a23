#include "InProc/Vantrel/ItemRequests.h"

#include <optional>

#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/Interaction/DomAriaCombo.h"
#include "RuntimeCore/Interaction/ItemsListBox.h"
#include "RuntimeCore/Interaction/ItemsSelection.h"

namespace Zorvex {

namespace {

// What to work on; nothing, with the reason in the log, if it can't be had.
std::optional<ItemsContainer> SelectableContainer(const AAElement& element) {
    HWND window = element.hWnd;
    CComPtr<IAccessible> container = element.spAcc;
    if (!GetSelectableAccElementFromWindow(window, container)) return std::nullopt;
    return ItemsContainer(window, container);
}

}  // namespace

GetAllItemsResponse GetAllItemsImpl(const GetAllItemsRequest& request) {
    LogVerbose("calling LookupIdentifier");
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    GetAllItemsResponse response;
    if (!::IsWindow(element.hWnd)) return response;

    auto comboBox = DomAriaComboBox::CreateFromAccessible(element.hWnd, element.spAcc, request.element.isDomAria != 0);
    if (comboBox) {
        response.comboBoxResult = comboBox->TriggerOptionsListLoad();
        if (FAILED(response.comboBoxResult)) {
            LogError("Initial ComboBox expand failed.");
            return response;
        }
    }
    if (const auto container = SelectableContainer(element)) response.status = GetAllItems(*container, response.items);
    if (comboBox) {
        response.comboBoxResult = comboBox->CollapseItems();
        if (FAILED(response.comboBoxResult)) LogError("Could not close the ComboBox after expanding it.");
    }
    return response;
}

SelectionResponse SetSelectedItemsImpl(const SetSelectedItemsRequest& request) {
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    if (NWindows::IsListBoxWindow(element.hWnd)) {
        if (request.items.empty()) return {ClearSelectedItemsImpl_ListBox(element.hWnd)};
        return {SetSelectedItemsImpl_ListBox(element.hWnd, request.items, request.clearFirst, request.firstMatchOnly)};
    }
    const auto container = SelectableContainer(element);
    if (!container) return {SelectionResult::Failure};
    if (request.clearFirst) {
        const SelectionResult cleared = ClearSelection(*container, SingleSelection::Leave);
        if (cleared != SelectionResult::Success) {
            LogError("Failed to clear previous selection");
            return {cleared};
        }
    }
    const ItemChoice choice = request.firstMatchOnly ? ItemChoice::FirstMatchOnly : ItemChoice::EveryMatch;
    const DisabledItems disabled = request.allowDisabled ? DisabledItems::Allow : DisabledItems::Refuse;
    for (const CString& item : request.items) {
        const SelectionResult selected = SetSelectedItemImpl(*container, item, choice, disabled);
        if (selected != SelectionResult::Success) {
            LogError("Failed to select item: %ls", item);
            return {selected};
        }
    }
    return {SelectionResult::Success};
}

GetSelectedItemsResponse GetSelectedItemsImpl(const GetSelectedItemsRequest& request) {
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    GetSelectedItemsResponse response;
    if (const auto container = SelectableContainer(element)) response.status = GetSelectedItems(*container, response.items);
    return response;
}

SelectionResponse ClearSelectedItemsImpl(const ClearSelectedItemsRequest& request) {
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(request.element);
    const auto container = SelectableContainer(element);
    if (!container) return {SelectionResult::Failure};
    return {ClearSelection(*container, SingleSelection::Clear)};
}

}  // namespace Zorvex
