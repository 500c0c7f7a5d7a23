#include "tests/Support/DesktopFixture.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <stdexcept>

#include "Platform/Simulated/AccessibleElement.h"
#include "Platform/Simulated/DesktopFile.h"
#include "Platform/Simulated/InstalledDesktop.h"

namespace Zorvex::Testing {
namespace {

using namespace Simulated;

[[noreturn]] void Unknown(std::string_view what, std::string_view id) {
    throw std::invalid_argument("the desktop has no " + std::string(what) + " \"" + std::string(id) + "\"");
}

ElementPtr ElementNamed(Desktop& desktop, std::string_view id) {
    ElementPtr element = desktop.AnyElementById(id);
    if (!element) Unknown("element", id);
    return element;
}

WindowPtr WindowNamed(Desktop& desktop, std::string_view id) {
    WindowPtr window = desktop.AnyWindowById(id);
    if (!window) Unknown("window", id);
    return window;
}

Call CallNamed(std::string_view name) {
    Call call = Call::Any;
    if (!CallFromName(name, call)) throw std::invalid_argument("no call is named " + std::string(name));
    return call;
}

CComPtr<IAccessible> Owned(AccessibleElement* object) {
    CComPtr<IAccessible> owner;
    owner.Attach(object);
    return owner;
}

}  // namespace

DesktopFixture::DesktopFixture(std::string_view json) : DesktopFixture(ReadDesktop(json)) {}

DesktopFixture::DesktopFixture(std::shared_ptr<Desktop> desktop)
    : m_desktop(std::move(desktop)), m_installed(std::make_unique<InstalledDesktop>(m_desktop)) {}

DesktopFixture::~DesktopFixture() = default;

std::string DesktopFixture::ShippedFile(std::string_view name) {
    const std::filesystem::path path = std::filesystem::path(__FILE__).parent_path().parent_path() / "desktops" / name;
    // Sources are compiled under short paths, so that builds don't depend on the folder; the tests' own is known.
    std::ifstream file(std::filesystem::exists(path) ? path : std::filesystem::path(VANTREL_SOURCE_DIR) / path, std::ios::binary);
    if (!file) throw std::invalid_argument("no shipped desktop is named " + std::string(name));
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

HWND DesktopFixture::Window(std::string_view id) const { return WindowNamed(*m_desktop, id)->hwnd; }

CComPtr<IAccessible> DesktopFixture::Element(std::string_view id) const {
    const std::lock_guard guard(m_desktop->Lock());
    ElementPtr element = ElementNamed(*m_desktop, id);
    if (element->simple)
        if (const ElementPtr container = m_desktop->ContainerOf(*element)) element = container;
    return Owned(m_desktop->ObjectOf(element));
}

LONG DesktopFixture::ChildId(std::string_view id) const {
    const std::lock_guard guard(m_desktop->Lock());
    const ElementPtr element = ElementNamed(*m_desktop, id);
    if (!element->simple) return CHILDID_SELF;
    const ElementPtr container = m_desktop->ContainerOf(*element);
    return container ? static_cast<LONG>(m_desktop->PlaceOf(*container, *element) + 1) : CHILDID_SELF;
}

CComVariant DesktopFixture::Child(std::string_view id) const { return CComVariant(ChildId(id)); }

CComPtr<IAccessible> DesktopFixture::WindowObject(std::string_view id) const {
    const std::lock_guard guard(m_desktop->Lock());
    return Owned(m_desktop->ObjectOf(m_desktop->RootOf(*WindowNamed(*m_desktop, id), OBJID_WINDOW)));
}

CComPtr<IAccessible> DesktopFixture::ClientObject(std::string_view id) const {
    const std::lock_guard guard(m_desktop->Lock());
    return Owned(m_desktop->ObjectOf(m_desktop->RootOf(*WindowNamed(*m_desktop, id), OBJID_CLIENT)));
}

int DesktopFixture::Calls(std::string_view id, std::string_view name) const {
    const std::lock_guard guard(m_desktop->Lock());
    const Call call = CallNamed(name);
    // An element and a window may have the same id; which is meant shows in the call.
    unsigned count = 0;
    const ElementPtr element = m_desktop->AnyElementById(id);
    const WindowPtr window = m_desktop->AnyWindowById(id);
    if (!element && !window) Unknown("element or window", id);
    if (element) count += element->calls.Of(call);
    if (window) count += window->calls.Of(call);
    return static_cast<int>(count);
}

int DesktopFixture::Calls(std::string_view name) const {
    const std::lock_guard guard(m_desktop->Lock());
    return static_cast<int>(m_desktop->TotalCalls(CallNamed(name)));
}

int DesktopFixture::TotalCalls() const {
    const std::lock_guard guard(m_desktop->Lock());
    return static_cast<int>(m_desktop->TotalCalls());
}

long DesktopFixture::OutstandingReferences() const { return m_desktop->OutstandingReferences(); }

long DesktopFixture::OutstandingReferences(std::string_view id) const { return ElementNamed(*m_desktop, id)->references; }

std::vector<std::string> DesktopFixture::Done() const {
    const std::lock_guard guard(m_desktop->Lock());
    return m_desktop->Recorded();
}

void DesktopFixture::AddFault(std::string_view id, Fault fault) {
    const std::lock_guard guard(m_desktop->Lock());
    const ElementPtr element = m_desktop->AnyElementById(id);
    const WindowPtr window = m_desktop->AnyWindowById(id);
    if (!element && !window) Unknown("element or window", id);
    if (window) window->faults.push_back(fault);
    if (element) element->EditDetails().faults.push_back(std::move(fault));
}

void DesktopFixture::AddFault(Fault fault) { m_desktop->AddFault(std::move(fault)); }
void DesktopFixture::ClearFaults() { m_desktop->ClearFaults(); }

void DesktopFixture::Advance(unsigned milliseconds) { m_desktop->Wait(milliseconds); }

void DesktopFixture::DestroyWindow(std::string_view id) { m_desktop->Destroy(WindowNamed(*m_desktop, id)); }

void DesktopFixture::RemoveElement(std::string_view id) { m_desktop->Remove(ElementNamed(*m_desktop, id)); }

void DesktopFixture::Do(const Action& action) { m_desktop->Do(action); }

}  // namespace Zorvex::Testing
