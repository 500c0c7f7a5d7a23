// The client object of any window: its child windows as children. Controls add their items to it.
#pragma once

#include "tests/live/standard_objects/StandardObject.h"

namespace StandardObjects {

class ClientObject : public StandardObject {
public:
    using StandardObject::StandardObject;

protected:
    CComPtr<IAccessible> Parent() override { return WindowObjectOf(Window()); }

    std::vector<CComPtr<IAccessible>> ObjectChildren() override {
        std::vector<CComPtr<IAccessible>> children;
        for (const HWND child : ChildWindows(Window())) children.push_back(WindowObjectOf(child));
        return children;
    }

    LONG Role(LONG) override { return ROLE_SYSTEM_CLIENT; }

    // A rectangle in client coordinates, on the screen.
    RECT ToScreen(RECT rectangle) const {
        ::MapWindowPoints(Window(), nullptr, reinterpret_cast<POINT*>(&rectangle), 2);
        return rectangle;
    }
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const { return ::SendMessageW(Window(), message, wParam, lParam); }

    // The text of the static control in front of this one: how a field without a text of its own gets its name.
    std::wstring Label() const {
        const HWND before = ::GetWindow(Window(), GW_HWNDPREV);
        std::wstring text = before && ClassOf(before) == L"Static" ? TitleOf(before) : std::wstring();
        std::erase(text, L'&');
        return text;
    }
    // Its own text, else that of the static control in front of it.
    std::wstring OwnName() const {
        std::wstring text = TitleOf(Window());
        return text.empty() ? Label() : text;
    }
};

// The client object for the common control of that class, or null.
CComPtr<IAccessible> MakeControl(HWND window, const std::wstring& windowClass);

}  // namespace StandardObjects
