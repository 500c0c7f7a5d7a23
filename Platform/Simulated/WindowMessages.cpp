#include "Platform/Simulated/WindowMessages.h"

#include <algorithm>

namespace Simulated {
namespace {

// List box messages that not every SDK header at hand names.
constexpr UINT SetSelection = 0x0185, SetCurrentSelection = 0x0186, GetSelection = 0x0187, GetCurrentSelection = 0x0188,
               GetSelectionCount = 0x0190, GetSelectionItems = 0x0191;

// At most capacity - 1 units and a NUL; answers the units copied.
LRESULT CopyText(const std::wstring& text, wchar_t* target, std::size_t capacity) {
    if (!target || capacity == 0) return 0;
    const std::size_t length = std::min(text.size(), capacity - 1);
    std::copy_n(text.data(), length, target);
    target[length] = 0;
    return static_cast<LRESULT>(length);
}

bool AnswerListBox(ListBoxData& box, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) {
    const std::size_t index = static_cast<std::size_t>(wParam);
    const bool inside = index < box.items.size();
    const auto selected = [&](LONG item) { return std::find(box.selection.begin(), box.selection.end(), item) != box.selection.end(); };
    answer = -1;  // LB_ERR
    switch (message) {
        case LB_GETCOUNT: answer = static_cast<LRESULT>(box.items.size()); return true;
        case LB_GETTEXTLEN:
            if (inside) answer = static_cast<LRESULT>(box.items[index].size());
            return true;
        case LB_GETTEXT:
            if (inside) answer = CopyText(box.items[index], reinterpret_cast<wchar_t*>(lParam), box.items[index].size() + 1);
            return true;
        case GetSelection:
            if (inside) answer = selected(static_cast<LONG>(index)) ? 1 : 0;
            return true;
        case GetCurrentSelection:
            if (!box.selection.empty()) answer = box.selection.front();
            return true;
        case GetSelectionCount:
            if (box.multiple) answer = static_cast<LRESULT>(box.selection.size());
            return true;
        case GetSelectionItems:
            if (!box.multiple) return true;
            answer = static_cast<LRESULT>(std::min<std::size_t>(static_cast<std::size_t>(wParam), box.selection.size()));
            std::copy_n(box.selection.begin(), static_cast<std::size_t>(answer), reinterpret_cast<int*>(lParam));
            return true;
        case SetCurrentSelection:
            if (box.multiple) return true;
            box.selection.clear();
            if (!inside) return true;  // -1 clears, and answers LB_ERR as published
            box.selection.push_back(static_cast<LONG>(index));
            answer = static_cast<LRESULT>(index);
            return true;
        case SetSelection: {
            const LONG item = static_cast<LONG>(lParam);
            if (!box.multiple || item < -1 || item >= static_cast<LONG>(box.items.size())) return true;
            answer = 0;
            for (LONG each = 0; each < static_cast<LONG>(box.items.size()); ++each) {
                if (item != -1 && each != item) continue;
                std::erase(box.selection, each);
                if (wParam) box.selection.push_back(each);
            }
            std::sort(box.selection.begin(), box.selection.end());
            return true;
        }
        default: return false;
    }
}

bool AnswerListView(Window& window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) {
    const ListViewData& view = *window.listView;
    answer = 0;
    if (message == LVM_GETITEMCOUNT) {
        answer = static_cast<LRESULT>(view.items.size());
        return true;
    }
    if (message == LVM_GETHEADER) {
        for (const WindowPtr& child : window.children)
            if (child->made) answer = reinterpret_cast<LRESULT>(child->hwnd);
        return true;
    }
    if (message != LVM_GETITEMTEXTW) return false;
    auto* const item = reinterpret_cast<LVITEMW*>(lParam);
    if (!item || item->cchTextMax <= 0) return true;
    const std::size_t row = static_cast<std::size_t>(wParam);
    const std::size_t column = static_cast<std::size_t>(item->iSubItem);
    const bool known = row < view.items.size() && column < view.items[row].size();
    answer = CopyText(known ? view.items[row][column] : std::wstring(), item->pszText, static_cast<std::size_t>(item->cchTextMax));
    return true;
}

bool AnswerHeader(const ListViewData& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) {
    const std::size_t index = static_cast<std::size_t>(wParam);
    answer = 0;
    switch (message) {
        case HDM_GETITEMCOUNT: answer = static_cast<LRESULT>(view.columns.size()); return true;
        case HDM_ORDERTOINDEX:
            // An order that no column has is answered as it stands.
            answer = static_cast<LRESULT>(wParam);
            for (std::size_t i = 0; i < view.columns.size(); ++i)
                if (view.columns[i].order == static_cast<int>(wParam)) answer = static_cast<LRESULT>(i);
            return true;
        case HDM_GETITEMW: {
            auto* const item = reinterpret_cast<HDITEMW*>(lParam);
            if (!item || index >= view.columns.size()) return true;
            const ListViewColumn& column = view.columns[index];
            if (item->mask & HDI_WIDTH) item->cxy = column.width;
            if (item->mask & HDI_ORDER) item->iOrder = column.order;
            if ((item->mask & HDI_TEXT) && item->cchTextMax > 0)
                CopyText(column.text, item->pszText, static_cast<std::size_t>(item->cchTextMax));
            answer = 1;
            return true;
        }
        default: return false;
    }
}

}  // namespace

bool AnswerMessage(Desktop&, Window& window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) {
    const auto told = window.messages.find(message);
    if (told != window.messages.end()) {
        answer = static_cast<LRESULT>(told->second);
        return true;
    }
    if (message == WM_GETTEXTLENGTH) {
        answer = static_cast<LRESULT>(window.title.size());
        return true;
    }
    if (message == WM_GETTEXT) {
        answer = CopyText(window.title, reinterpret_cast<wchar_t*>(lParam), static_cast<std::size_t>(wParam));
        return true;
    }
    if (window.listBox && AnswerListBox(*window.listBox, message, wParam, lParam, answer)) return true;
    if (window.listView && AnswerListView(window, message, wParam, lParam, answer)) return true;
    if (window.made && window.parent && window.parent->listView) return AnswerHeader(*window.parent->listView, message, wParam, lParam, answer);
    answer = 0;
    return false;
}

}  // namespace Simulated
