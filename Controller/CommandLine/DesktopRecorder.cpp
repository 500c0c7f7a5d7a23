#include "Controller/CommandLine/DesktopRecorder.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "Controller/CommandLine/Elements.h"
#include "Controller/CommandLine/ElementTree.h"
#include "Controller/CommandLine/Output.h"
#include "Platform/Simulated/DesktopFile.h"
#include "Platform/Simulated/DesktopModel.h"

namespace Zorvex::Controller {

namespace {

using Simulated::ElementPtr;
using Simulated::WindowPtr;

constexpr std::size_t kDepth = 500, kMaximum = 50'000;
// The objects of a window in the order in which a window object lists them.
constexpr std::array<LONG, 7> kObjectIds = {-1, -2, -3, -4, -5, -6, -7};
constexpr LONG kWindowObject = 0, kClientObject = -4;
constexpr LONG kAutomationId = 30011, kLabeledBy = 30018;

// The other way round than a location became a rectangle: a sum that went round comes back as it was.
LONG Extent(LONG from, LONG to) { return static_cast<LONG>(static_cast<std::uint32_t>(to) - static_cast<std::uint32_t>(from)); }

Simulated::Rectangle PlaceOf(const RECT& rectangle) {
    return {rectangle.left, rectangle.top, Extent(rectangle.left, rectangle.right), Extent(rectangle.top, rectangle.bottom)};
}

// A text of any length that a window function fills.
template <class Get>
std::wstring WindowText(Get get) {
    std::wstring text(4096, L'\0');
    const auto length = get(text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(std::max<int>(static_cast<int>(length), 0)));
    return text;
}

BOOL CALLBACK Collect(HWND window, LPARAM list) {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

class Recorder {
public:
    explicit Recorder(Session& session) : m_session(session) {}

    Recording Record() {
        m_tree = ReadTree(m_session, kDepth, kMaximum);
        if (m_tree.cut) throw CommandFailure(ExitCode::TargetProblem, "the window has more elements than a file can hold");
        GatherWindows();
        ClaimWindows();
        ReadElements();
        PlaceElements();
        return Finish();
    }

private:
    WindowPtr Describe(HWND handle) {
        auto window = std::make_shared<Simulated::Window>();
        window->handle = static_cast<std::uint32_t>(reinterpret_cast<UINT_PTR>(handle));
        window->className = WindowText([&](wchar_t* text, int size) { return ::GetClassNameW(handle, text, size); });
        const std::wstring real = WindowText([&](wchar_t* text, int size) { return ::RealGetWindowClassW(handle, text, static_cast<UINT>(size)); });
        if (real != window->className) window->realClass = real;
        window->title = WindowText([&](wchar_t* text, int size) { return ::GetWindowTextW(handle, text, size); });
        RECT rectangle{};
        ::GetWindowRect(handle, &rectangle);
        window->rectangle = PlaceOf(rectangle);
        const LONG style = static_cast<LONG>(::GetWindowLongPtrW(handle, GWL_STYLE));
        window->style = static_cast<std::uint32_t>(style);
        window->extendedStyle = static_cast<std::uint32_t>(::GetWindowLongPtrW(handle, GWL_EXSTYLE));
        // The window's own bit: a visible child of a hidden window stays one.
        window->visible = (style & WS_VISIBLE) != 0;
        window->enabled = ::IsWindowEnabled(handle);
        window->thread = ::GetWindowThreadProcessId(handle, &window->process);
        window->hwnd = handle;
        return window;
    }

    void GatherWindows() {
        const HWND top = m_session.Window().window;
        m_windows.emplace(top, m_top = Describe(top));
        std::vector<HWND> below;
        ::EnumChildWindows(top, &Collect, reinterpret_cast<LPARAM>(&below));
        for (const HWND handle : below) m_windows.emplace(handle, Describe(handle));
        m_order = std::move(below);
    }

    // Which node stands for the window object of which window: the first in a window that its container isn't in.
    void ClaimWindows() {
        m_claims.resize(m_tree.nodes.size());
        m_claims[0] = m_top.get();
        std::set<HWND> claimed{m_session.Window().window};
        for (const std::size_t place : DepthFirst(m_tree)) {
            const TreeNode& node = m_tree.nodes[place];
            if (node.parent < 0 || node.identifier.childId != CHILDID_SELF) continue;
            const HWND own = node.identifier.hWnd, outer = m_tree.nodes[static_cast<std::size_t>(node.parent)].identifier.hWnd;
            const auto window = m_windows.find(own);
            if (own != outer && window != m_windows.end() && claimed.insert(own).second) m_claims[place] = window->second.get();
        }
        // Only windows that are written have a number, so that a recording of a recording is the same.
        std::size_t number = 1;
        m_top->id = "window1";
        for (const HWND handle : m_order)
            if (claimed.count(handle)) m_windows.at(handle)->id = "window" + std::to_string(++number);
    }

    AttributeResponse Native(const AAObjectIdentifier& element, const wchar_t* name) {
        return m_session.Call(GetNativeAttributeRequest{{element, name}});
    }
    // An empty text comes like none, so none is written.
    std::optional<std::wstring> TextIfAny(const AAObjectIdentifier& element, const wchar_t* name) {
        const AttributeResponse answer = Native(element, name);
        if (answer.result != S_OK || answer.value.vt != VT_BSTR || ::SysStringLen(answer.value.bstrVal) == 0) return std::nullopt;
        return std::wstring(answer.value.bstrVal, ::SysStringLen(answer.value.bstrVal));
    }
    std::optional<LONG> Number(const AAObjectIdentifier& element, const wchar_t* name) {
        const AttributeResponse answer = Native(element, name);
        return SUCCEEDED(answer.result) && answer.value.vt == VT_I4 ? std::optional(answer.value.lVal) : std::nullopt;
    }

    void ReadElements() {
        std::vector<AAObjectIdentifier> identifiers;
        for (const TreeNode& node : m_tree.nodes) identifiers.push_back(node.identifier);
        const auto automationIds = ReadTexts(m_session, identifiers, L"automationid");
        const auto labels = ReadTexts(m_session, identifiers, L"labeledby");
        const auto roleTexts = ReadTexts(m_session, identifiers, L"role");
        for (std::size_t i = 0; i < identifiers.size(); ++i) {
            ElementPtr element = ReadOwn(identifiers[i]);
            if (const auto role = Number(identifiers[i], L"accRole")) element->role = *role;
            else if (!roleTexts[i].empty()) element->EditDetails().roleText = roleTexts[i];
            Simulated::UiaData uia;
            if (!automationIds[i].empty()) uia.properties.emplace_back(kAutomationId, automationIds[i]);
            if (!labels[i].empty()) uia.properties.emplace_back(kLabeledBy, labels[i]);
            if (!uia.properties.empty()) element->EditDetails().uia = std::move(uia);
            m_elements.push_back(std::move(element));
        }
    }

    ElementPtr ReadOwn(const AAObjectIdentifier& identifier) {
        auto element = std::make_shared<Simulated::Element>();
        element->simple = identifier.childId != CHILDID_SELF;
        element->state = Number(identifier, L"accState").value_or(0);
        element->name = TextIfAny(identifier, L"accName");
        element->value = TextIfAny(identifier, L"accValue");
        if (const auto place = RectangleOf(Native(identifier, L"accLocation").value)) element->rectangle = PlaceOf(*place);
        if (auto text = TextIfAny(identifier, L"accDescription")) element->EditDetails().description = std::move(text);
        if (auto text = TextIfAny(identifier, L"accHelp")) element->EditDetails().help = std::move(text);
        if (auto text = TextIfAny(identifier, L"accKeyboardShortcut")) element->EditDetails().shortcut = std::move(text);
        if (auto text = TextIfAny(identifier, L"accDefaultAction")) element->EditDetails().defaultAction = std::move(text);
        if (element->simple) return element;
        if (const auto role = Number(identifier, L"role")) {
            Simulated::Ia2Data ia2;
            ia2.role = *role;
            ia2.states = Number(identifier, L"states").value_or(0);
            ia2.uniqueId = Number(identifier, L"uniqueID");
            ia2.attributes = TextIfAny(identifier, L"attributes");
            // In these windows the text attribute is that of IAccessible2, if there is one.
            if (identifier.isDomAria) {
                const AttributeResponse text = m_session.Call(GetElemAttrRequest{{identifier, L"text"}});
                if (SUCCEEDED(text.result) && text.value.vt == VT_BSTR && ::SysStringLen(text.value.bstrVal) != 0)
                    ia2.text = std::wstring(text.value.bstrVal, ::SysStringLen(text.value.bstrVal));
            }
            element->EditDetails().ia2 = std::move(ia2);
        }
        return element;
    }

    // Which child of a window's node is which of its objects.
    std::map<std::size_t, LONG> FindObjects(const TreeNode& node, const Simulated::Window& window) {
        std::map<std::size_t, LONG> objects;
        for (const LONG id : kObjectIds) {
            const AAObjectIdentifier object =
                m_session.Call(GetObjectIdFromEventRequest{m_session.ClientNumber(), window.hwnd, id, CHILDID_SELF}).element;
            if (object.containerId == 0) continue;
            for (const std::size_t child : node.children) {
                const AAObjectIdentifier& candidate = m_tree.nodes[child].identifier;
                if (candidate.childId != CHILDID_SELF || m_claims[child] || objects.count(child)) continue;
                const bool same = candidate.containerId == object.containerId || m_session.Call(AreEqualRequest{candidate, object}).answer;
                if (same) {
                    objects.emplace(child, id);
                    break;
                }
            }
        }
        return objects;
    }

    static ElementPtr StandIn(Simulated::ElementKind kind, const std::string& window) {
        auto element = std::make_shared<Simulated::Element>();
        element->kind = kind;
        element->EditDetails().target = window;
        return element;
    }

    void PlaceElements() {
        std::vector<std::map<std::size_t, LONG>> objects(m_tree.nodes.size());
        for (std::size_t i = 0; i < m_tree.nodes.size(); ++i) {
            const TreeNode& node = m_tree.nodes[i];
            if (Simulated::Window* window = m_claims[i]) {
                window->objects[kWindowObject] = m_elements[i];
                objects[i] = FindObjects(node, *window);
                for (const auto& [child, id] : objects[i]) window->objects[id] = m_elements[child];
                if (ListedByItself(node, objects[i])) continue;
                m_elements[i]->childrenGiven = true;
                // Without a stand-in of their own, other objects are plain children.
                for (const auto& [child, id] : objects[i])
                    if (id != kClientObject) window->objects.erase(id);
            }
            for (const std::size_t child : node.children) {
                const auto object = objects[i].find(child);
                if (m_claims[child]) m_elements[i]->Add(StandIn(Simulated::ElementKind::WindowObject, m_claims[child]->id));
                else if (object != objects[i].end() && object->second == kClientObject)
                    m_elements[i]->Add(StandIn(Simulated::ElementKind::ClientObject, m_claims[i]->id));
                else m_elements[i]->Add(m_elements[child]);
            }
        }
    }

    // A window object lists the objects that the file gives by itself, in their published order; the client always.
    static bool ListedByItself(const TreeNode& node, const std::map<std::size_t, LONG>& objects) {
        if (objects.size() != node.children.size()) return false;
        std::ptrdiff_t last = -1;
        bool client = false;
        for (const std::size_t child : node.children) {
            const auto object = objects.find(child);
            if (object == objects.end()) return false;
            const std::ptrdiff_t place = std::find(kObjectIds.begin(), kObjectIds.end(), object->second) - kObjectIds.begin();
            if (place <= last) return false;
            last = place;
            client = client || object->second == kClientObject;
        }
        return client;
    }

    Recording Finish() {
        Simulated::DesktopModel model;
        model.windows.push_back(m_top);
        std::set<Simulated::Window*> shown(m_claims.begin(), m_claims.end());
        std::set<DWORD> processes{m_top->process};
        Recording recording;
        recording.elements = m_elements.size();
        recording.windows = 1;
        for (const HWND handle : m_order) {
            const WindowPtr& window = m_windows.at(handle);
            if (!shown.count(window.get())) continue;
            // A window whose parent isn't in the file moves up to the nearest one that is.
            HWND parent = ::GetAncestor(handle, GA_PARENT);
            while (m_windows.count(parent) && !shown.count(m_windows.at(parent).get())) parent = ::GetAncestor(parent, GA_PARENT);
            const auto place = m_windows.find(parent);
            (place == m_windows.end() ? m_top : place->second)->children.push_back(window);
            processes.insert(window->process);
            ++recording.windows;
        }
        for (const DWORD id : processes) {
            Simulated::ProcessData process;
            process.id = id;
            process.current = id == m_top->process;
            process.path = process.current ? m_session.Window().processName : L"";
            model.processes.push_back(process);
        }
        recording.text = Simulated::WriteDesktop(model);
        return recording;
    }

    Session& m_session;
    ElementTree m_tree;
    std::map<HWND, WindowPtr> m_windows;
    std::vector<HWND> m_order;  // child windows, parents before their children
    WindowPtr m_top;
    std::vector<Simulated::Window*> m_claims;  // by node; null: stands for no window
    std::vector<ElementPtr> m_elements;        // by node
};

}  // namespace

Recording RecordDesktop(Session& session) { return Recorder(session).Record(); }

}  // namespace Zorvex::Controller
