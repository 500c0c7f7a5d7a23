// A simulated desktop for the length of a test. The text is a desktop file (docs/desktop-files.md); a mistake in
// it throws Simulated::DesktopFileError, so that the test fails with the place of the mistake. Rectangles are
// left, top, width, height. Native builds only.
//
//     DesktopFixture desktop(R"({ "windows": [ { "id": "main", "class": "Dialog", "objects": { "client": {
//         "children": [ { "id": "ok", "role": "push button", "name": "OK" } ] } } } ] })");
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Simulated/Fault.h"
#include "Platform/Windows.h"

namespace Simulated {
class Desktop;
class InstalledDesktop;
}  // namespace Simulated

namespace Zorvex::Testing {

// An unknown id or name of a call throws std::invalid_argument.
class DesktopFixture {
public:
    explicit DesktopFixture(std::string_view json);
    // A desktop built in code.
    explicit DesktopFixture(std::shared_ptr<Simulated::Desktop> desktop);
    DesktopFixture(const DesktopFixture&) = delete;
    DesktopFixture& operator=(const DesktopFixture&) = delete;
    // Objects that are still held stay safe to use: they answer from the desktop that they were made from.
    ~DesktopFixture();

    // One of the shipped files: "settings.json".
    static std::string ShippedFile(std::string_view name);

    HWND Window(std::string_view id) const;
    // The object that answers for the element: its own, or of a simple one its container's. These references
    // count as outstanding until they are released.
    CComPtr<IAccessible> Element(std::string_view id) const;
    // VT_I4: CHILDID_SELF, or the child id of a simple element.
    CComVariant Child(std::string_view id) const;
    LONG ChildId(std::string_view id) const;
    // The window's own objects, as AccessibleObjectFromWindow gives them.
    CComPtr<IAccessible> WindowObject(std::string_view windowId) const;
    CComPtr<IAccessible> ClientObject(std::string_view windowId) const;

    // How often the call was made on the element or window; over all of them; all calls of all elements.
    int Calls(std::string_view id, std::string_view call) const;
    int Calls(std::string_view call) const;
    int TotalCalls() const;
    // References to objects of the desktop (also enumerators) given and not released; those to one element.
    long OutstandingReferences() const;
    long OutstandingReferences(std::string_view id) const;
    // What was done to elements, in order: "accDoDefaultAction ok", "accSelect ok 2", "put_accValue name text",
    // "scrollTo ok 6".
    std::vector<std::string> Done() const;

    // Adds to the plan of an element or window. Calls made before count for `at`.
    void AddFault(std::string_view id, Simulated::Fault fault);
    // Adds to the plan of the whole desktop: the `at`-th call of any element from now.
    void AddFault(Simulated::Fault fault);
    void ClearFaults();

    // Moves the clock.
    void Advance(unsigned milliseconds);
    void DestroyWindow(std::string_view id);
    void RemoveElement(std::string_view id);
    void Do(const Simulated::Action& action);

    Simulated::Desktop& Get() const { return *m_desktop; }

private:
    std::shared_ptr<Simulated::Desktop> m_desktop;
    std::unique_ptr<Simulated::InstalledDesktop> m_installed;
};

}  // namespace Zorvex::Testing
