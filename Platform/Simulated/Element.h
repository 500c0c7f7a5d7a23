// One accessible element of the desktop: what the file says about it, and what has happened to it since.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Platform/Simulated/Fault.h"

namespace Simulated {

class AccessibleElement;
struct Window;

enum class ElementKind : std::uint8_t {
    Own,           // described where it stands
    WindowObject,  // stands for the window object of the window `target`
    ClientObject,  // stands for the client object of the window `target`
    Reference      // stands for the element `target`, which lives elsewhere: a second way to it, maybe a cycle
};

// How accHitTest answers for a point inside the element.
enum class HitTest : std::uint8_t { Child, Deepest, Self, Nothing };

struct Ia2Data {
    LONG role = 0;
    LONG states = 0;
    std::optional<LONG> uniqueId = {};
    std::optional<std::wstring> attributes = {};
    std::optional<std::wstring> text = {};   // present: the element has IAccessibleText
    std::vector<Rectangle> characters = {};  // extents; the text's width is shared out evenly past their end
    LONG caret = 0;
};

using PropertyData = std::variant<std::wstring, LONG, bool, double>;

struct UiaData {
    std::optional<std::vector<LONG>> runtimeId = {};
    std::vector<std::pair<LONG, PropertyData>> properties = {};  // by published property id
};

// What most elements don't have.
struct ElementDetails {
    std::optional<std::wstring> roleText = {};  // the role is this text instead of a number
    std::optional<std::wstring> description = {};
    std::optional<std::wstring> help = {};
    std::optional<std::wstring> shortcut = {};
    std::optional<std::wstring> defaultAction = {};
    std::vector<Action> action = {};  // what the default action brings about
    std::string window = {};          // id; empty: inherited from above
    std::string target = {};          // of a stand-in
    std::string focus = {};           // id or "self"; empty: found out from the focused state
    std::string hitTarget = {};       // id of the element that every hit test inside gives
    HitTest hitTest = HitTest::Child;
    std::optional<std::vector<std::string>> selection = {};  // ids; absent: found out from the selected children
    bool selectionAsEnumerator = false;                      // even when one is selected
    std::optional<std::string> identity = {};                // bytes
    std::optional<Ia2Data> ia2 = {};
    std::optional<UiaData> uia = {};
    bool html = false;                         // the service provider gives an IHTMLElement
    // Gives what else the service provider is asked for. A test's own, never in a file; it outlives the element.
    IUnknown* services = nullptr;
    std::optional<bool> serviceProvider = {};  // absent: when there is ia2, uia, html or services
    std::optional<HRESULT> removedResult = {};
    std::vector<Fault> faults = {};
};

struct Element : std::enable_shared_from_this<Element> {
    Element() = default;
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    // Takes the tree below apart without recursion, so that its depth doesn't matter.
    ~Element();

    const ElementDetails& Details() const;
    ElementDetails& EditDetails();
    // Appends, or inserts, and becomes the parent.
    void Add(ElementPtr child, std::size_t position = static_cast<std::size_t>(-1));
    // A copy of what the file says about this element alone, and about its whole tree.
    ElementPtr CopyAlone() const;
    ElementPtr CopyTree() const;

    std::string id;
    ElementKind kind = ElementKind::Own;
    bool simple = false;   // answered by its container, under its place as child id
    bool proxies = false;  // a new COM object each time it is handed out
    bool endless = false;  // always has one child, like itself
    bool made = false;     // made up, not described: never written to a file
    LONG role = 0;
    LONG state = 0;
    std::optional<std::wstring> name;
    std::optional<std::wstring> value;
    std::optional<Rectangle> rectangle;
    std::unique_ptr<ElementDetails> details;  // null: nothing of it
    bool childrenGiven = false;  // the file lists children, maybe none: nothing is added to a window object
    std::vector<ElementPtr> children;

    // Run time.
    Element* parent = nullptr;           // null: the root of a window's object, or removed
    Window* rootOf = nullptr;            // the window whose object this is
    LONG rootObject = 0;                 // OBJID_WINDOW, OBJID_CLIENT, ...
    bool removed = false;
    AccessibleElement* object = nullptr;  // kept weakly
    std::weak_ptr<Element> endlessChild;
    ElementPtr keeper;                   // an endless child keeps its parent, not the other way round
    std::atomic<LONG> references{0};
    mutable std::size_t place = 0;       // where it was last found among its parent's children
    CallCounts calls;
};

}  // namespace Simulated
