// The desktop at work: finds windows and elements, hands out their COM objects, applies the fault plan, counts.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Platform/Simulated/DesktopModel.h"

namespace Simulated {

class AccessibleElement;

// May be used from several threads: one lock guards the whole desktop, and no caller's code runs under it. COM
// objects keep the desktop alive; the desktop keeps them weakly.
class Desktop : public std::enable_shared_from_this<Desktop> {
public:
    // Takes the model over, gives handles to windows and makes what was left out: window and client objects,
    // headers of list views. Ids that are taken twice, or lead nowhere, throw std::invalid_argument.
    static std::shared_ptr<Desktop> Build(DesktopModel model);
    ~Desktop();

    const DesktopModel& Model() const { return m_model; }
    std::recursive_mutex& Lock() { return m_lock; }

    // Null when there is none (any more).
    WindowPtr WindowById(std::string_view id);
    WindowPtr WindowByHandle(HWND handle);
    ElementPtr ElementById(std::string_view id);
    // The window or element that ever had the id, also a destroyed or removed one.
    WindowPtr AnyWindowById(std::string_view id);
    ElementPtr AnyElementById(std::string_view id);
    // A serving program tells which real window stands for the described one.
    void SetHandle(const WindowPtr& window, HWND handle);
    // All windows, topmost first, each before its children.
    std::vector<WindowPtr> AllWindows();

    // The described root, or a made one for OBJID_WINDOW and OBJID_CLIENT; else null.
    ElementPtr RootOf(Window& window, LONG objectId);
    // The element that really stands at this place of the container: stand-ins are resolved, the windows of a
    // client object follow its listed children. Null past the end, and when what was named is gone.
    ElementPtr ChildAt(Element& container, std::size_t index);
    std::size_t ChildCount(Element& container);
    // The container of an element, across windows: the client object of the parent window, null at the top.
    ElementPtr ContainerOf(Element& element);
    // Its place, from 0; -1 when it isn't there.
    std::ptrdiff_t PlaceOf(Element& container, const Element& child);
    // The window that the element says it is in, or inherits. Null: none.
    WindowPtr WindowOf(Element& element);
    Rectangle RectangleOf(Element& element);

    // The COM object of the element, with a reference for the caller; null for null. That of a simple element
    // gives only automation's view of it.
    AccessibleElement* ObjectOf(const ElementPtr& element);

    // The bookkeeping of COM objects.
    void CountReference(Element* element, int change);
    long OutstandingReferences() const { return m_references; }

    // Counts one call, brings due changes about and finds the fault that it meets; the caller then answers as it
    // tells. `element` may be null for calls of windows, and the other way round.
    std::optional<Fault> Count(Element* element, Window* window, Call call, std::string_view iid = {});
    unsigned TotalCalls() const { return m_totalCalls; }
    unsigned TotalCalls(Call call) const { return m_totals.Of(call); }
    void AddFault(Fault fault);
    void ClearFaults();
    void Record(std::string text);
    const std::vector<std::string>& Recorded() const { return m_recorded; }

    void Do(const Action& action, Element* self = nullptr);
    void Do(const std::vector<Action>& actions, Element* self = nullptr);
    void Remove(const ElementPtr& element);
    void Destroy(const WindowPtr& window);
    // Null: nobody has the focus.
    void Focus(const ElementPtr& element);
    ElementPtr Focused();

    // The clock, which a serving program may replace; natively the simulated one.
    void Wait(unsigned milliseconds);
    ULONGLONG Now() const;
    // Changes that are due and need no message happen now.
    void BringAboutDueChanges();
    // The next message that is due, or false. The actions of a removed one wait for its dispatch.
    bool NextMessage(HWND window, bool remove, MSG& message);
    void DispatchPosted(const MSG& message);

private:
    explicit Desktop(DesktopModel model);
    void Adopt(const WindowPtr& window, Window* parent);
    void AdoptTree(const ElementPtr& root);
    void CheckNames(const ElementPtr& root);
    void ForgetTree(const ElementPtr& root);
    ElementPtr MakeRoot(Window& window, LONG objectId);
    ElementPtr Resolve(const ElementPtr& element);
    std::vector<ElementPtr> MadeChildren(Element& container);
    void Change(Element& element, const Action& action);

    struct TextHash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    template <class Value>
    using ById = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

    mutable std::recursive_mutex m_lock;
    DesktopModel m_model;
    ById<WindowPtr> m_windows;
    ById<ElementPtr> m_elements;
    std::unordered_map<HWND, WindowPtr> m_handles;
    std::uint32_t m_nextHandle = 0x00010100;
    std::weak_ptr<Element> m_focused;
    std::atomic<long> m_references{0};
    unsigned m_totalCalls = 0;
    struct DesktopFault {
        Fault fault;
        unsigned before;  // calls made before it was added
    };
    std::vector<DesktopFault> m_faults;
    std::vector<ElementPtr> m_removed;  // kept, so that no object's parent is ever gone
    CallCounts m_totals;
    std::vector<std::string> m_recorded;
    ULONGLONG m_start = 0;
    struct Pending {
        ScheduledChange change;
        bool taken = false;  // removed from the queue, not dispatched yet
        bool done = false;
    };
    std::vector<Pending> m_pending;
};

// The desktop that the simulated functions answer from; null when there is none. Natively set by InstalledDesktop.h.
std::shared_ptr<Desktop> CurrentDesktop();

}  // namespace Simulated
