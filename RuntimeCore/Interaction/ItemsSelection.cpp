#include "RuntimeCore/Interaction/ItemsSelection.h"

#include <optional>
#include <utility>

#include "Common/UTILITY/NWindows.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/Log.h"
#include "RuntimeCore/AAUtilitiesSelection.h"
#include "RuntimeCore/AAUtilitiesStates.h"
#include "RuntimeCore/Interaction/ItemsListBox.h"
#include "RuntimeCore/Interaction/ItemsSearch.h"

namespace Zorvex {

namespace {

const CComVariant& Self() {
    static const CComVariant self(CHILDID_SELF);
    return self;
}

struct SelectSupport {
    bool has = false;
    CString itemRole;
};

SelectSupport SelectSupportOf(const ItemsContainer& container) {
    SelectSupport support;
    support.has = AAUtil::HasSelectSupport(container.Accessible(), Self(), support.itemRole);
    return support;
}

SelectionResult NothingFound(const SelectSupport& support) {
    return support.has ? SelectionResult::NothingFound : SelectionResult::NothingFoundNoSelectSupport;
}

SelectionResult ToStatus(AAUtil::SelectionResult result) { return static_cast<SelectionResult>(result); }

// What names an item of this container. Nothing unless the read answers S_OK; a null text is an empty one.
std::optional<CString> ItemText(const ItemsContainer& container, IAccessible* accessible, const VARIANT& child) {
    CComBSTR text;
    const HRESULT result = container.HasRole(ROLE_SYSTEM_TABLE) ? accessible->get_accValue(child, &text) : accessible->get_accName(child, &text);
    if (result != S_OK) return std::nullopt;
    return text.ToString();
}

// One selected child as the element to talk to: the container under its child id, or the object itself.
struct SelectedItem {
    CComPtr<IAccessible> accessible;
    CComVariant child;
    bool isObject = false;
};

// Nothing for a child of another type, and for an object that is no IAccessible.
std::optional<SelectedItem> ResolveSelected(IAccessible* container, const CComVariant& child) {
    if (child.vt == VT_I4 && container) return SelectedItem{CComPtr<IAccessible>(container), child, false};
    if (child.vt != VT_DISPATCH || !child.pdispVal) return std::nullopt;
    CComPtr<IAccessible> object;
    if (FAILED(CComPtr<IDispatch>(child.pdispVal).QueryInterface(object)) || !object) return std::nullopt;
    return SelectedItem{std::move(object), Self(), true};
}

// The flag with which an item joins what is selected, or takes its place.
LONG SelectFlag(const ItemsContainer& container, const Search::AaSearchResult& item) {
    if (!IsMultiSelectable(item.accessible, item.child) && !container.IsMultiSelectable()) return SELFLAG_TAKESELECTION;
    CComVariant selection;
    const bool hasSelection = container.Accessible()->get_accSelection(&selection) == S_OK && selection.vt != VT_EMPTY;
    return hasSelection ? SELFLAG_ADDSELECTION : SELFLAG_TAKESELECTION;
}

// In a table it is the row that gets selected. A cell without a parent counts as done, on purpose.
HRESULT SelectRow(const Search::AaSearchResult& cell) {
    CComPtr<IDispatch> dispatch;
    CComPtr<IAccessible> row;
    if (cell.accessible->get_accParent(&dispatch) != S_OK) return S_OK;
    if (FAILED(dispatch.QueryInterface(row)) || !row) return S_OK;
    return row->accSelect(SELFLAG_ADDSELECTION, Self());
}

HRESULT Act(const ItemsContainer& container, const Search::AaSearchResult& item) {
    if (container.HasRole(ROLE_SYSTEM_PAGETABLIST)) return item.accessible->accDoDefaultAction(item.child);
    if (container.HasRole(ROLE_SYSTEM_TABLE)) return SelectRow(item);
    if (container.IsChromiumList()) return item.accessible->accDoDefaultAction(Self());
    const LONG flag = SelectFlag(container, item);
    return item.accessible->accSelect(flag, item.child);
}

// Whether the combo box could be asked and shows something else than the text.
bool ShowsAnother(IAccessible* comboBox, const CComBSTR& text) {
    CComBSTR value;
    return SUCCEEDED(comboBox->get_accValue(Self(), &value)) && ::VarBstrCmp(value, text, LOCALE_USER_DEFAULT, 0) != VARCMP_EQ;
}

// Brings the text into the combo box itself where selecting the item in its list didn't.
HRESULT FinishComboBox(const ItemsContainer& container, const CString& item, HRESULT result) {
    const CComPtr<IAccessible> comboBox(container.Accessible());
    const CComBSTR text(item);
    if (SUCCEEDED(result)) {
        if (ShowsAnother(comboBox, text)) result = comboBox->put_accValue(Self(), text);
        if (SUCCEEDED(result) && !NWindows::IsChromiumWindow(container.Window()) && !NWindows::IsFirefoxWindow(container.Window()))
            return result;
    }
    return ShowsAnother(comboBox, text) ? comboBox->accDoDefaultAction(Self()) : result;
}

bool ShouldClear(const ItemsContainer& container, SingleSelection single) {
    if (container.HasRole(ROLE_SYSTEM_COMBOBOX) || container.HasRole(ROLE_SYSTEM_PAGETABLIST)) return false;
    if (!container.HasRole(ROLE_SYSTEM_LIST) && !container.HasRole(ROLE_SYSTEM_OUTLINE)) return true;
    CComPtr<IAccessible> holder;
    std::vector<CComVariant> selected;
    if (AAUtil::GetSelectedChildren(container.Accessible(), holder, selected, AAUtil::SelectionExtent::FirstOnly) !=
            AAUtil::SelectionResult::Success ||
        selected.empty())
        return false;
    if (single == SingleSelection::Clear) return true;
    const auto first = ResolveSelected(holder, selected.front());
    return (first && IsMultiSelectable(first->accessible, first->child)) || container.IsMultiSelectable();
}

}  // namespace

SelectionResult GetAllItems(const ItemsContainer& container, std::vector<CString>& items) {
    if (!container.Accessible() || !::IsWindow(container.Window())) {
        LogError("Invalid arguments");
        return SelectionResult::Failure;
    }
    const SelectSupport support = SelectSupportOf(container);
    const FoundItems found = FindItems(container, {.role = support.itemRole, .name = {}, .text = {}}, ItemMatches::All);
    if (found.failed) {
        LogError("GetAllItems:: search failed");
        return SelectionResult::Failure;
    }
    if (found.items.empty()) return NothingFound(support);
    for (const Search::AaSearchResult& item : found.items) {
        auto text = ItemText(container, item.accessible, item.child);
        if (text && !text->empty()) items.push_back(std::move(*text));
    }
    return container.HasRole(ROLE_SYSTEM_COMBOBOX) && items.empty() ? SelectionResult::NothingFound : SelectionResult::Success;
}

SelectionResult SetSelectedItemImpl(const ItemsContainer& container, const CString& item, ItemChoice choice, DisabledItems disabled) {
    ::SetFocus(container.Window());
    const SelectSupport support = SelectSupportOf(container);
    ItemPattern pattern{.role = support.itemRole, .name = {}, .text = {}};
    (container.HasRole(ROLE_SYSTEM_TABLE) ? pattern.text : pattern.name) = item;
    const bool everyMatch = choice == ItemChoice::EveryMatch && HasWildcard(item) && HasMultipleSelectionSupport(container);
    const FoundItems found = FindItems(container, pattern, everyMatch ? ItemMatches::All : ItemMatches::First);
    if (found.failed || found.items.empty()) {
        LogError("Item not found in SetSelectItemsImpl");
        return NothingFound(support);
    }
    for (const Search::AaSearchResult& match : found.items) {
        if (disabled == DisabledItems::Refuse && AAUtil::IsDisabledElement(match.accessible, match.child)) {
            LogError("SetSelectedItemImpl: trying to select disable item");
            return SelectionResult::ItemDisabled;
        }
        HRESULT result = Act(container, match);
        if (container.HasRole(ROLE_SYSTEM_COMBOBOX)) result = FinishComboBox(container, item, result);
        if (FAILED(result)) {
            LogError("Acc selection failed");
            return SelectionResult::Failure;
        }
    }
    return SelectionResult::Success;
}

SelectionResult ClearSelection(const ItemsContainer& container, SingleSelection single) {
    if (!ShouldClear(container, single)) return SelectionResult::Success;
    CComPtr<IAccessible> holder;
    std::vector<CComVariant> selected;
    const auto read = AAUtil::GetSelectedChildren(container.Accessible(), holder, selected, AAUtil::SelectionExtent::All);
    if (read != AAUtil::SelectionResult::Success) return ToStatus(read);
    const bool isPressed = container.IsChromiumList();
    // An item that refuses stays selected, and nobody is told.
    for (const CComVariant& child : selected) {
        const auto item = ResolveSelected(holder, child);
        if (!item) continue;
        if (isPressed && item->isObject) item->accessible->accDoDefaultAction(item->child);
        else item->accessible->accSelect(SELFLAG_REMOVESELECTION, item->child);
    }
    return SelectionResult::Success;
}

SelectionResult GetSelectedItems(const ItemsContainer& container, std::vector<CString>& items) {
    const auto emptyStatus = [&](SelectionResult status) {
        return items.empty() && !SelectSupportOf(container).has ? SelectionResult::NothingFoundNoSelectSupport : status;
    };
    const bool isComboBox = container.HasRole(ROLE_SYSTEM_COMBOBOX);
    if (isComboBox) {
        CComBSTR value;
        if (SUCCEEDED(container.Accessible()->get_accValue(Self(), &value))) {
            items.push_back(value.ToString());
            return SelectionResult::Success;
        }
    } else if (NWindows::IsListBoxWindow(container.Window())) {
        return emptyStatus(GetSelectedItemsImpl_ListBox(container.Window(), items, AAUtil::SelectionExtent::All));
    }
    CComPtr<IAccessible> holder;
    std::vector<CComVariant> selected;
    const auto read = AAUtil::GetSelectedChildren(container.Accessible(), holder, selected, AAUtil::SelectionExtent::All);
    if (read != AAUtil::SelectionResult::Success) return ToStatus(read);
    for (const CComVariant& child : selected) {
        const auto item = ResolveSelected(holder, child);
        auto text = item ? ItemText(container, item->accessible, item->child) : std::nullopt;
        if (text) items.push_back(std::move(*text));
    }
    return emptyStatus(SelectionResult::Success);
}

}  // namespace Zorvex
