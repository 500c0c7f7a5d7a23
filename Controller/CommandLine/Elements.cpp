#include "Controller/CommandLine/Elements.h"

#include <algorithm>
#include <cstdlib>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Identifier.h"
#include "Controller/CommandLine/Output.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex::Controller {

namespace {

// So many elements a request keep each request's answer small and each request short.
constexpr std::size_t kBatch = 500;

// A selector whose wnd tags fit more windows is searched for in the first ones.
constexpr std::size_t kSearchedWindows = 20;

template <class Use>
bool EachNumber(const VARIANT& value, Use use) {
    if (!(value.vt & VT_ARRAY) || !value.parray || ::SafeArrayGetDim(value.parray) != 1) return false;
    LONG first = 0, last = -1;
    if (FAILED(::SafeArrayGetLBound(value.parray, 1, &first)) || FAILED(::SafeArrayGetUBound(value.parray, 1, &last))) return false;
    for (LONG i = first; i <= last; ++i) {
        LONG number = 0;
        if (value.vt == (VT_ARRAY | VT_I4)) {
            if (FAILED(::SafeArrayGetElement(value.parray, &i, &number))) return false;
        } else if (value.vt == (VT_ARRAY | VT_VARIANT)) {
            CComVariant item;
            if (FAILED(::SafeArrayGetElement(value.parray, &i, &item)) || item.vt != VT_I4) return false;
            number = item.lVal;
        } else {
            return false;
        }
        use(number);
    }
    return true;
}

// One coordinate; `text` moves behind it. False if there is none that 32 bits hold.
bool ReadCoordinate(const char*& text, LONG& coordinate) {
    char* end = nullptr;
    const long long number = std::strtoll(text, &end, 10);
    if (end == text || number < INT32_MIN || number > INT32_MAX) return false;
    coordinate = static_cast<LONG>(number);
    text = end;
    return true;
}

// "at 10,20", also with blanks, or with a blank in place of the comma.
std::optional<POINT> ReadPoint(const std::wstring& text) {
    if (text.rfind(L"at ", 0) != 0) return std::nullopt;
    const std::string numbers = NarrowText(std::wstring_view(text).substr(3));
    const char* rest = numbers.c_str();
    POINT point{};
    if (!ReadCoordinate(rest, point.x)) return std::nullopt;
    const char* const between = rest;
    while (*rest == ' ') ++rest;
    if (*rest == ',') ++rest;
    if (rest == between || !ReadCoordinate(rest, point.y) || *rest) return std::nullopt;
    return point;
}

}  // namespace

std::vector<CComVariant> ReadAttribute(Session& session, const std::vector<AAObjectIdentifier>& elements, const std::wstring& name) {
    std::vector<CComVariant> values;
    values.reserve(elements.size());
    for (std::size_t start = 0; start < elements.size(); start += kBatch) {
        GetAttrForElementsRequest request;
        const std::size_t end = std::min(start + kBatch, elements.size());
        request.elements.assign(elements.begin() + static_cast<std::ptrdiff_t>(start), elements.begin() + static_cast<std::ptrdiff_t>(end));
        request.attributeName = name;
        auto response = session.Call(request);
        if (response.values.size() != end - start)
            throw CommandFailure(ExitCode::TargetProblem, "the server answered for " + std::to_string(response.values.size()) +
                                                              " elements in place of " + std::to_string(end - start));
        std::move(response.values.begin(), response.values.end(), std::back_inserter(values));
    }
    return values;
}

std::vector<std::wstring> ReadTexts(Session& session, const std::vector<AAObjectIdentifier>& elements, const std::wstring& name) {
    std::vector<std::wstring> texts;
    texts.reserve(elements.size());
    for (const CComVariant& value : ReadAttribute(session, elements, name))
        texts.push_back(value.vt == VT_BSTR && value.bstrVal ? std::wstring(value.bstrVal, ::SysStringLen(value.bstrVal)) : std::wstring());
    return texts;
}

std::optional<LONG> ReadState(Session& session, const AAObjectIdentifier& element) {
    const auto answer = session.Call(GetNativeAttributeRequest{{element, L"accState"}});
    if (FAILED(answer.result) || answer.value.vt != VT_I4) return std::nullopt;
    return answer.value.lVal;
}

std::optional<RECT> RectangleOf(const VARIANT& value) {
    std::vector<LONG> numbers;
    if (!EachNumber(value, [&](LONG number) { numbers.push_back(number); }) || numbers.size() != 4) return std::nullopt;
    return RECT{numbers[0], numbers[1], numbers[2], numbers[3]};
}

std::string VariantText(const VARIANT& value) {
    if (const auto rectangle = RectangleOf(value)) return RectangleText(*rectangle);
    switch (value.vt) {
        case VT_EMPTY: return "-";
        case VT_BSTR: return value.bstrVal ? QuotedText({value.bstrVal, ::SysStringLen(value.bstrVal)}) : "\"\"";
        case VT_I4: return std::to_string(value.lVal);
        case VT_BOOL: return value.boolVal ? "true" : "false";
        default: return "(variant of type " + std::to_string(value.vt) + ")";
    }
}

void WriteVariant(JsonWriter& json, const VARIANT& value) {
    if (const auto rectangle = RectangleOf(value)) {
        json.Rectangle(*rectangle);
        return;
    }
    switch (value.vt) {
        case VT_EMPTY: json.Null(); break;
        case VT_BSTR: json.Text(std::wstring_view(value.bstrVal ? value.bstrVal : L"", ::SysStringLen(value.bstrVal))); break;
        case VT_I4: json.Number(value.lVal); break;
        case VT_BOOL: json.Flag(value.boolVal != VARIANT_FALSE); break;
        default: json.Text(std::string_view(VariantText(value)));
    }
}

std::vector<ElementView> ReadViews(Session& session, const std::vector<AAObjectIdentifier>& elements) {
    std::vector<ElementView> views(elements.size());
    if (elements.empty()) return views;
    const auto roles = ReadTexts(session, elements, L"role"), names = ReadTexts(session, elements, L"name"),
               states = ReadTexts(session, elements, L"aastate");
    const auto rectangles = ReadAttribute(session, elements, L"screenRect");
    for (std::size_t i = 0; i < elements.size(); ++i) {
        views[i] = {elements[i], roles[i], names[i], states[i], RectangleOf(rectangles[i]).value_or(RECT{})};
    }
    return views;
}

std::string ViewText(const ElementView& view) {
    std::string text = view.role.empty() ? "(no role)" : NarrowText(view.role);
    if (!view.name.empty()) text += " " + QuotedText(view.name);
    text += "  " + RectangleText(view.rectangle);
    if (!view.state.empty()) text += "  [" + NarrowText(view.state) + "]";
    return text;
}

void WriteView(JsonWriter& json, const ElementView& view) {
    json.Key("identifier").Text(std::string_view(IdentifierText(view.identifier)));
    json.Key("role").Text(view.role).Key("name").Text(view.name).Key("state").Text(view.state);
    json.Key("rectangle").Rectangle(view.rectangle);
}

std::vector<AAObjectIdentifier> Search(Session& session, const AAObjectIdentifier& root, Search::SelectorEntry entry) {
    FindSelectorsRequest request;
    request.root = root;
    request.selectors.push_back(std::move(entry));
    request.timeoutMilliseconds = session.SearchMilliseconds();
    const auto response = session.Call(request);
    std::vector<AAObjectIdentifier> elements;
    if (!response.success || response.results.empty()) return elements;
    auto results = response.results[0].results;
    std::sort(results.begin(), results.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    for (const auto& result : results) elements.push_back(result.identifier);
    return elements;
}

Search::ResultPolicy PolicyFor(const TagList& tags) {
    const bool fuzzy = std::any_of(tags.begin(), tags.end(), [](const auto& tag) { return tag->HasFuzzyAttributes(); });
    return fuzzy ? Search::ResultPolicy::BestMatch : Search::ResultPolicy::FirstMatch;
}

std::vector<HWND> OpenWindows(Session& session, const SplitSelector& selector) {
    if (selector.windows.empty()) {
        session.Open();
        return {session.Window().window};
    }
    std::vector<HWND> top;
    if (session.HasChoice()) top.push_back(session.Choose().window);
    FoundWindows found = FindWindows(session.System(), selector.windows, selector.scope, top);
    if (found.windows.empty()) throw CommandFailure(ExitCode::NotFound, NoWindowText(found, selector.windows));
    found.windows.resize(std::min(found.windows.size(), kSearchedWindows));
    session.MoveTo(found.windows.front());
    return std::move(found.windows);
}

AAObjectIdentifier WindowElement(Session& session, HWND window) {
    const auto element = session.Call(GetObjectIdFromWindowRequest{session.ClientNumber(), window}).element;
    if (element == AAObjectIdentifier{}) throw CommandFailure(ExitCode::NotFound, "the window has no accessible element");
    return element;
}

AAObjectIdentifier FindTarget(Session& session, const TargetName& name) {
    const auto point = ReadPoint(name.text);
    if (point) {
        session.OpenAt(*point);
        FindElemFromPointRequest request;
        request.clientPid = session.ClientNumber();
        request.window = session.Window().window;
        request.point = *point;
        request.flags = FromPointBrowseHierarchy | FromPointHitTest;
        const auto element = session.Call(request).element;
        if (element == AAObjectIdentifier{}) throw CommandFailure(ExitCode::NotFound, "there is no element " + NarrowText(name.text));
        return element;
    }
    if (name.text.empty()) {
        session.Open();
        return WindowElement(session, session.Window().window);
    }
    if (const auto identifier = ReadIdentifier(name.text)) {
        session.Open();
        if (!session.Call(IsValidIdentifierRequest{{*identifier}}).answer)
            throw CommandFailure(ExitCode::NotFound, "the identifier " + NarrowText(name.text) +
                                                         " isn't known (any more): identifiers outlive one command with --keep alone");
        return *identifier;
    }
    if (const auto handle = ReadHandle(name.text)) {
        session.Open();
        return WindowElement(session, *handle);
    }
    Selector selector;
    SelectorTextError error;
    if (!ParseSelector(name.text, selector, error))
        throw CommandFailure(ExitCode::WrongArguments, "this is no identifier, no handle, no at X,Y, and no selector:\n" + NarrowText(error.Show(name.text)));
    const SplitSelector split = Split(selector);
    for (const HWND window : OpenWindows(session, split)) {
        session.MoveTo(window);
        if (split.elements.empty()) return WindowElement(session, window);
        Search::SelectorEntry entry;
        entry.tags = split.elements;
        entry.options.scope = split.ElementSelector().scope;
        entry.options.maxResults = 1;
        entry.options.resultPolicy = PolicyFor(split.elements);
        const auto found = Search(session, session.Root(), std::move(entry));
        if (!found.empty()) return found.front();
    }
    throw CommandFailure(ExitCode::NotFound, "no element fits " + NarrowText(WriteSelector(selector)) + "; the command find tells more");
}

}  // namespace Zorvex::Controller
