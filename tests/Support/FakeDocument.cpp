#include "tests/Support/FakeDocument.h"

#include <algorithm>

namespace Zorvex::Testing {

namespace {

// Names get their numbers as they come up.
std::vector<std::wstring>& Names() {
    static std::vector<std::wstring> names;
    return names;
}

void Give(VARIANT* result, const CComVariant& value) {
    CComVariant copy(value);
    copy.DetachTo(*result);
}
void Give(VARIANT* result, FakeHtmlObject* object) { Give(result, CComVariant(object ? object->Dispatch() : nullptr)); }

bool SameObject(const CComVariant& argument, const FakeHtmlObject& object) {
    return argument.vt == VT_DISPATCH && argument.pdispVal == const_cast<FakeHtmlObject&>(object).Dispatch();
}

}  // namespace

HRESULT FakeHtmlObject::QueryInterface(REFIID riid, void** object) {
    *object = nullptr;
    switch (FakeCalls::Instance().Count()) {
        case FakeCalls::Spoil::Fail: return E_NOINTERFACE;
        case FakeCalls::Spoil::NullWithSuccess: return S_OK;
        default: break;
    }
    const bool offered = std::any_of(interfaces.begin(), interfaces.end(), [&](const IID& id) { return IsEqualIID(id, riid); });
    if (IsEqualIID(riid, IidOf<IUnknown>()) || IsEqualIID(riid, IidOf<IDispatch>())) *object = Dispatch();
    else if (IsEqualIID(riid, IidOf<IServiceProvider>()) && accessible) *object = static_cast<IServiceProvider*>(this);
    else if (!offered) return E_NOINTERFACE;
    else if (IsEqualIID(riid, IidOf<IHTMLElement>())) *object = static_cast<IHTMLElement*>(this);
    else if (IsEqualIID(riid, IidOf<IHTMLBodyElement>())) *object = static_cast<IHTMLBodyElement*>(this);
    else if (IsEqualIID(riid, IidOf<IHTMLDocument2>())) *object = static_cast<IHTMLDocument2*>(this);
    else if (IsEqualIID(riid, IidOf<IHTMLWindow2>())) *object = static_cast<IHTMLWindow2*>(this);
    else if (IsEqualIID(riid, IidOf<IHTMLWindow7>())) *object = static_cast<IHTMLWindow7*>(this);
    else return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG FakeHtmlObject::AddRef() { return static_cast<ULONG>(++FakeCalls::Instance().references); }
ULONG FakeHtmlObject::Release() { return static_cast<ULONG>(--FakeCalls::Instance().references); }

HRESULT FakeHtmlObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    *ids = -1;
    if (count != 1) return E_INVALIDARG;
    switch (FakeCalls::Instance().Count()) {
        case FakeCalls::Spoil::Fail: return E_FAIL;
        case FakeCalls::Spoil::NullWithSuccess: return S_OK;
        default: break;
    }
    const std::wstring name = names[0];
    if (!values.count(name) && !objects.count(name) && !methods.count(name)) return DISP_E_UNKNOWNNAME;
    const auto found = std::find(Names().begin(), Names().end(), name);
    *ids = static_cast<DISPID>(found - Names().begin());
    if (found == Names().end()) Names().push_back(name);
    return S_OK;
}

HRESULT FakeHtmlObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* given, VARIANT* result, EXCEPINFO*, UINT*) {
    switch (FakeCalls::Instance().Count()) {
        case FakeCalls::Spoil::Fail: return E_FAIL;
        case FakeCalls::Spoil::NullWithSuccess:
            // An object property answers null, anything else nothing at all.
            if (result && (flags & DISPATCH_PROPERTYGET)) result->vt = VT_DISPATCH, result->pdispVal = nullptr;
            return S_OK;
        default: break;
    }
    if (id < 0 || static_cast<std::size_t>(id) >= Names().size()) return DISP_E_MEMBERNOTFOUND;
    const std::wstring name = Names()[static_cast<std::size_t>(id)];
    Arguments arguments;
    for (UINT index = given->cArgs; index > 0; --index) arguments.emplace_back(given->rgvarg[index - 1]);
    CComVariant dropped;
    if (!result) result = &dropped;
    if (flags & DISPATCH_PROPERTYPUT) {
        if (arguments.size() != 1 || given->cNamedArgs != 1 || given->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT) return E_INVALIDARG;
        values[name] = arguments[0];
        return S_OK;
    }
    if (const auto found = methods.find(name); found != methods.end()) return found->second(arguments, result);
    if (const auto found = objects.find(name); found != objects.end()) Give(result, found->second());
    else if (const auto value = values.find(name); value != values.end()) Give(result, value->second);
    else return DISP_E_MEMBERNOTFOUND;
    return S_OK;
}

HRESULT FakeHtmlObject::QueryService(REFGUID, REFIID riid, void** object) {
    *object = nullptr;
    switch (FakeCalls::Instance().Count()) {
        case FakeCalls::Spoil::Fail: return E_FAIL;
        case FakeCalls::Spoil::NullWithSuccess: return S_OK;
        default: break;
    }
    return accessible ? static_cast<IAccessible*>(accessible)->QueryInterface(riid, object) : E_NOINTERFACE;
}

HRESULT FakeHtmlObject::get_innerWidth(LONG* width) {
    const bool spoilt = FakeCalls::Instance().Count() != FakeCalls::Spoil::Nothing;
    *width = spoilt ? 0 : innerWidth;
    return spoilt ? E_FAIL : innerResult;
}
HRESULT FakeHtmlObject::get_innerHeight(LONG* height) {
    const bool spoilt = FakeCalls::Instance().Count() != FakeCalls::Spoil::Nothing;
    *height = spoilt ? 0 : innerHeight;
    return spoilt ? E_FAIL : innerResult;
}

FakeDocument::FakeDocument(FakeObjects& accessibles, RECT screen) : windowAccessible(accessibles.Add()), m_accessibles(accessibles) {
    windowAccessible.left = screen.left;
    windowAccessible.top = screen.top;
    windowAccessible.width = screen.right - screen.left;
    windowAccessible.height = screen.bottom - screen.top;

    document.interfaces = {IidOf<IHTMLDocument2>()};
    document.objects[L"body"] = [this] { return &body; };
    document.objects[L"parentWindow"] = [this] { return &window; };
    document.methods[L"createElement"] = [this](const auto&, VARIANT* result) {
        Give(result, &NewMarker());
        return S_OK;
    };
    document.methods[L"getElementsByTagName"] = [this](const auto& arguments, VARIANT* result) {
        std::wstring tag = arguments.at(0).bstrVal;
        std::transform(tag.begin(), tag.end(), tag.begin(), [](wchar_t unit) { return unit >= L'a' && unit <= L'z' ? unit - 32 : unit; });
        std::vector<FakeHtmlObject*> items;
        for (const Piece& piece : m_pieces)
            if (piece.element && tag == piece.element->values[L"tagName"].bstrVal) items.push_back(piece.element);
        Give(result, &NewCollection(std::move(items)));
        return S_OK;
    };
    document.methods[L"elementFromPoint"] = [this](const auto& arguments, VARIANT* result) {
        const POINT point{arguments.at(0).lVal, arguments.at(1).lVal};
        FakeHtmlObject* found = &body;
        for (const Piece& piece : m_pieces)
            if (piece.element && ::PtInRect(&piece.place, point)) found = piece.element;
        Give(result, found);
        return S_OK;
    };

    body.interfaces = {IidOf<IHTMLElement>(), IidOf<IHTMLBodyElement>()};
    body.values[L"tagName"] = CComVariant(L"BODY");
    body.objects[L"document"] = [this] { return &document; };
    body.methods[L"createTextRange"] = [this](const auto&, VARIANT* result) {
        Give(result, &NewRange(0, m_pieces.size()));
        return S_OK;
    };
    body.methods[L"removeChild"] = [this](const auto& arguments, VARIANT*) {
        for (const Piece& piece : m_pieces)
            if (piece.element && SameObject(arguments.at(0), *piece.element)) return Remove(*piece.element);
        return E_INVALIDARG;
    };

    window.interfaces = {IidOf<IHTMLWindow2>(), IidOf<IHTMLWindow7>()};
    window.objects[L"document"] = [this] { return &document; };
    window.accessible = &windowAccessible;
    window.innerWidth = windowAccessible.width;
    window.innerHeight = windowAccessible.height;
}

FakeDocument::~FakeDocument() = default;

void FakeDocument::AddText(std::wstring text, RECT place) { m_pieces.push_back({std::move(text), place, nullptr, false}); }

FakeHtmlObject& FakeDocument::NewObject() { return m_objects.emplace_back(); }

FakeHtmlObject& FakeDocument::AddElement(const wchar_t* tag, RECT place, std::wstring text) {
    FakeHtmlObject& element = NewObject();
    element.interfaces = {IidOf<IHTMLElement>()};
    element.values[L"tagName"] = CComVariant(tag);
    element.values[L"offsetWidth"] = CComVariant(place.right - place.left);
    element.values[L"offsetHeight"] = CComVariant(place.bottom - place.top);
    element.objects[L"document"] = [this] { return &document; };
    element.methods[L"sourceIndex"] = [this, &element](const auto&, VARIANT* result) {
        Give(result, CComVariant(static_cast<LONG>(PlaceOf(element))));
        return S_OK;
    };
    element.methods[L"insertAdjacentElement"] = [this, &element](const FakeHtmlObject::Arguments& arguments, VARIANT*) {
        if (std::wstring(arguments.at(0).bstrVal) != L"beforeBegin") return E_INVALIDARG;
        const auto marker = std::find_if(m_objects.begin(), m_objects.end(), [&](const FakeHtmlObject& object) { return SameObject(arguments.at(1), object); });
        if (marker == m_objects.end()) return E_INVALIDARG;
        Remove(*marker);
        m_pieces.insert(m_pieces.begin() + static_cast<std::ptrdiff_t>(PlaceOf(element)), Piece{{}, {}, &*marker, true});
        ++markersPlaced;
        return S_OK;
    };
    FakeHtmlObject& style = NewObject();
    style.values[L"visibility"] = CComVariant(L"visible");
    element.objects[L"currentStyle"] = [&style] { return &style; };
    FakeAccessible& accessible = m_accessibles.Add();
    accessible.left = windowAccessible.left + place.left;
    accessible.top = windowAccessible.top + place.top;
    accessible.width = place.right - place.left;
    accessible.height = place.bottom - place.top;
    element.accessible = &accessible;
    m_pieces.push_back({std::move(text), place, &element, false});
    return element;
}

FakeHtmlObject& FakeDocument::AddInput(const wchar_t* type, const wchar_t* value, RECT place) {
    FakeHtmlObject& input = AddElement(L"INPUT", place);
    input.values[L"type"] = CComVariant(type);
    input.values[L"value"] = CComVariant(value);
    return input;
}

FakeHtmlObject& FakeDocument::AddTextArea(const wchar_t* value, RECT place) {
    FakeHtmlObject& area = AddElement(L"TEXTAREA", place);
    area.values[L"value"] = CComVariant(value);
    return area;
}

FakeHtmlObject& FakeDocument::AddSelect(std::vector<std::wstring> options, LONG selected, RECT place) {
    std::wstring all;
    std::vector<FakeHtmlObject*> items;
    for (const std::wstring& option : options) {
        all += option;
        items.push_back(&NewObject());
        items.back()->values[L"text"] = CComVariant(std::wstring_view(option));
    }
    FakeHtmlObject& select = AddElement(L"SELECT", place, all);
    select.values[L"size"] = CComVariant(1);
    select.values[L"multiple"] = CComVariant(false);
    select.values[L"selectedIndex"] = CComVariant(selected);
    FakeHtmlObject& collection = NewCollection(std::move(items));
    select.objects[L"options"] = [&collection] { return &collection; };
    return select;
}

FakeHtmlObject& FakeDocument::AddFrame(FakeDocument& content, const wchar_t* tag, RECT place) {
    FakeHtmlObject& frame = AddElement(tag, place);
    frame.objects[L"contentWindow"] = [&content] { return &content.window; };
    return frame;
}

void FakeDocument::MakeFrameSet() {
    body.values[L"tagName"] = CComVariant(L"FRAMESET");
    body.methods.erase(L"createTextRange");
}

std::size_t FakeDocument::MarkersLeft() const {
    return static_cast<std::size_t>(std::count_if(m_pieces.begin(), m_pieces.end(), [](const Piece& piece) { return piece.isMarker; }));
}

std::size_t FakeDocument::PlaceOf(const FakeHtmlObject& element) const {
    const auto found = std::find_if(m_pieces.begin(), m_pieces.end(), [&](const Piece& piece) { return piece.element == &element; });
    return static_cast<std::size_t>(found - m_pieces.begin());
}

HRESULT FakeDocument::Remove(const FakeHtmlObject& marker) {
    const std::size_t place = PlaceOf(marker);
    if (place == m_pieces.size()) return E_FAIL;
    m_pieces.erase(m_pieces.begin() + static_cast<std::ptrdiff_t>(place));
    return S_OK;
}

FakeHtmlObject& FakeDocument::NewMarker() {
    FakeHtmlObject& marker = NewObject();
    FakeHtmlObject& style = NewObject();
    marker.values[L"tagName"] = CComVariant(L"SPAN");
    style.values[L"display"] = CComVariant(L"");
    marker.objects[L"style"] = [&style] { return &style; };
    marker.objects[L"parentNode"] = [this, &marker] { return PlaceOf(marker) < m_pieces.size() ? &body : nullptr; };
    marker.methods[L"setAttribute"] = [&marker](const auto& arguments, VARIANT*) {
        marker.values[arguments.at(0).bstrVal] = arguments.at(1);
        return S_OK;
    };
    marker.methods[L"removeNode"] = [this, &marker](const auto&, VARIANT*) { return Remove(marker); };
    return marker;
}

FakeHtmlObject& FakeDocument::NewCollection(std::vector<FakeHtmlObject*> items) {
    FakeHtmlObject& collection = NewObject();
    collection.values[L"length"] = CComVariant(lengthOfCollections.value_or(static_cast<LONG>(items.size())));
    const bool endless = lengthOfCollections.has_value();
    collection.methods[L"item"] = [items, endless](const auto& arguments, VARIANT* result) {
        const std::size_t index = endless ? 0 : static_cast<std::size_t>(arguments.at(0).lVal);
        Give(result, index < items.size() ? items[index] : nullptr);
        return S_OK;
    };
    return collection;
}

FakeDocument::Range* FakeDocument::RangeIn(const CComVariant& argument) {
    const auto found = std::find_if(m_ranges.rbegin(), m_ranges.rend(), [&](const Range& range) { return SameObject(argument, range.object); });
    return found == m_ranges.rend() ? nullptr : &*found;
}

RECT FakeDocument::Bounds(const Range& range) const {
    RECT bounds{};
    for (std::size_t index = range.start; index < range.end; ++index) {
        const RECT& place = m_pieces[index].place;
        if (::IsRectEmpty(&place)) continue;
        if (::IsRectEmpty(&bounds)) bounds = place;
        bounds = {std::min(bounds.left, place.left), std::min(bounds.top, place.top), std::max(bounds.right, place.right),
                  std::max(bounds.bottom, place.bottom)};
    }
    return bounds;
}

FakeHtmlObject& FakeDocument::NewRange(std::size_t start, std::size_t end) {
    Range& range = m_ranges.emplace_back();
    range.start = start;
    range.end = end;
    auto& methods = range.object.methods;
    methods[L"text"] = [this, &range](const auto&, VARIANT* result) {
        std::wstring text;
        for (std::size_t index = range.start; index < range.end; ++index) text += m_pieces[index].text;
        Give(result, CComVariant(std::wstring_view(text)));
        return S_OK;
    };
    methods[L"duplicate"] = [this, &range](const auto&, VARIANT* result) {
        Give(result, &NewRange(range.start, range.end));
        return S_OK;
    };
    methods[L"collapse"] = [&range](const auto& arguments, VARIANT*) {
        (arguments.at(0).boolVal ? range.end : range.start) = arguments.at(0).boolVal ? range.start : range.end;
        return S_OK;
    };
    methods[L"moveEnd"] = [this, &range](const auto& arguments, VARIANT* result) {
        if (std::wstring(arguments.at(0).bstrVal) != L"word") return E_INVALIDARG;
        while (range.end < m_pieces.size() && m_pieces[range.end].text.empty()) ++range.end;
        const bool moved = range.end < m_pieces.size();
        if (moved) ++range.end;
        Give(result, CComVariant(moved || endlessWords ? 1 : 0));
        return S_OK;
    };
    const auto ends = [this, &range](const auto& arguments, std::size_t*& own, std::size_t& other) {
        const std::wstring how = arguments.at(0).bstrVal;
        const Range* argument = RangeIn(arguments.at(1));
        if (!argument || how.find(L"To") == std::wstring::npos) return false;
        own = how.starts_with(L"Start") ? &range.start : &range.end;
        other = how.ends_with(L"Start") ? argument->start : argument->end;
        return true;
    };
    methods[L"compareEndPoints"] = [this, ends](const auto& arguments, VARIANT* result) {
        std::size_t* own = nullptr;
        std::size_t other = 0;
        if (!ends(arguments, own, other)) return E_INVALIDARG;
        Give(result, CComVariant(endlessWords || *own < other ? -1 : *own > other ? 1 : 0));
        return S_OK;
    };
    methods[L"setEndPoint"] = [ends, &range](const auto& arguments, VARIANT*) {
        std::size_t* own = nullptr;
        std::size_t other = 0;
        if (!ends(arguments, own, other)) return E_INVALIDARG;
        *own = other;
        // The other end never stands before the start.
        if (own == &range.start) range.end = std::max(range.start, range.end);
        else range.start = std::min(range.start, range.end);
        return S_OK;
    };
    methods[L"moveToElementText"] = [this, &range](const auto& arguments, VARIANT*) {
        for (std::size_t index = 0; index < m_pieces.size(); ++index) {
            if (!m_pieces[index].element || !SameObject(arguments.at(0), *m_pieces[index].element)) continue;
            if (m_pieces[index].isMarker && !rangesOfMarkers) return E_INVALIDARG;
            range.start = index;
            range.end = index + 1;
            return S_OK;
        }
        return E_INVALIDARG;
    };
    const auto bound = [&](const wchar_t* name, LONG (*read)(const RECT&)) {
        methods[name] = [this, &range, read](const auto&, VARIANT* result) {
            Give(result, CComVariant(read(Bounds(range))));
            return S_OK;
        };
    };
    bound(L"boundingLeft", [](const RECT& place) { return place.left; });
    bound(L"boundingTop", [](const RECT& place) { return place.top; });
    bound(L"boundingWidth", [](const RECT& place) { return place.right - place.left; });
    bound(L"boundingHeight", [](const RECT& place) { return place.bottom - place.top; });
    return range.object;
}

}  // namespace Zorvex::Testing
