// XML documents in memory: what the product builds tables with. A text is written on one line, without blanks between
// the elements.
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/Simulated/XmlDocuments.h"

namespace Simulated {
namespace {

constexpr CLSID DocumentClass = {0xF5078F32, 0xC551, 0x11D3, {0x89, 0xB9, 0x00, 0x00, 0xF8, 0x1F, 0xE2, 0x21}};

struct XmlState {
    std::mutex lock;
    std::vector<XmlFault> faults;
    std::map<std::string, unsigned, std::less<>> calls;
    unsigned total = 0;
    long references = 0;
};
XmlState& Xml() {
    static XmlState state;
    return state;
}

// Counts one call. The fault that meets it, if any.
std::optional<XmlFault> Enter(const char* call) {
    XmlState& state = Xml();
    const std::lock_guard guard(state.lock);
    ++state.total;
    const auto known = state.calls.find(std::string_view(call));
    ++(known != state.calls.end() ? known : state.calls.emplace(call, 0).first)->second;
    for (auto fault = state.faults.begin(); fault != state.faults.end(); ++fault) {
        if ((!fault->call.empty() && fault->call != call) || --fault->at != 0) continue;
        const XmlFault met = *fault;
        state.faults.erase(fault);
        return met;
    }
    return std::nullopt;
}

HRESULT ResultOf(const XmlFault& fault) { return fault.result.value_or(S_OK); }

void CountReference(int change) {
    const std::lock_guard guard(Xml().lock);
    Xml().references += change;
}

// The interfaces only lead to a node; the node lives as long as something holds it or it stands in a tree.
struct XmlNode {
    std::wstring name;
    std::vector<std::pair<std::wstring, std::wstring>> attributes;
    std::wstring text;
    std::vector<std::shared_ptr<XmlNode>> children;
    bool hasContent = false;  // has ever had any: written with an end tag of its own, even if the content is empty
};

void Escape(std::wstring_view text, bool inAttribute, std::wstring& out) {
    for (const wchar_t unit : text) {
        switch (unit) {
            case L'&': out += L"&amp;"; break;
            case L'<': out += L"&lt;"; break;
            case L'>': out += L"&gt;"; break;
            case L'"': out += inAttribute ? L"&quot;" : L"\""; break;
            case L'\t': out += inAttribute ? L"&#9;" : L"\t"; break;
            default: out += unit;
        }
    }
}

// Trees here are as deep as the product builds them: three levels.
void Write(const XmlNode& node, std::wstring& out) {
    out += L'<' + node.name;
    for (const auto& [name, value] : node.attributes) {
        out += L' ' + name + L"=\"";
        Escape(value, true, out);
        out += L'"';
    }
    if (!node.hasContent) {
        out += L"/>";
        return;
    }
    out += L'>';
    Escape(node.text, false, out);
    for (const auto& child : node.children) Write(*child, out);
    out += L"</" + node.name + L'>';
}

std::wstring_view TextOf(BSTR text) { return text ? std::wstring_view(text, ::SysStringLen(text)) : std::wstring_view(); }

// What both kinds of object do, late binding aside.
template <class Interface>
class XmlObject : public Interface {
public:
    XmlObject() { CountReference(1); }
    XmlObject(const XmlObject&) = delete;
    XmlObject& operator=(const XmlObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (!IsEqualGUID(riid, IidOf<IUnknown>()) && !IsEqualGUID(riid, IidOf<IDispatch>()) && !IsOwnInterface(riid)) return E_NOINTERFACE;
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override {
        CountReference(1);
        return ++m_references;
    }
    ULONG STDMETHODCALLTYPE Release() override {
        CountReference(-1);
        const ULONG count = --m_references;
        if (count == 0) delete this;
        return count;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE get_xml(BSTR* xml) override {
        if (!xml) return E_POINTER;
        *xml = nullptr;
        if (const auto fault = Enter("get_xml")) return ResultOf(*fault);
        std::wstring text;
        if (const XmlNode* node = Node()) Write(*node, text);
        *xml = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        return *xml ? S_OK : E_OUTOFMEMORY;
    }

protected:
    virtual ~XmlObject() = default;
    virtual bool IsOwnInterface(REFIID riid) const = 0;
    virtual const XmlNode* Node() const = 0;

private:
    ULONG m_references = 1;
};

class XmlElement final : public XmlObject<IXMLDOMElement> {
public:
    explicit XmlElement(std::shared_ptr<XmlNode> node) : m_node(std::move(node)) {}

    HRESULT STDMETHODCALLTYPE appendChild(IXMLDOMNode* child, IXMLDOMNode** newChild) override {
        if (newChild) *newChild = nullptr;
        if (const auto fault = Enter("appendChild")) return ResultOf(*fault);
        const auto* element = dynamic_cast<XmlElement*>(child);
        if (!element || element->m_node == m_node) return E_INVALIDARG;
        m_node->children.push_back(element->m_node);
        m_node->hasContent = true;
        if (newChild) {
            *newChild = child;
            child->AddRef();
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_text(BSTR text) override {
        if (const auto fault = Enter("put_text")) return ResultOf(*fault);
        m_node->children.clear();
        m_node->text = TextOf(text);
        m_node->hasContent = true;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE setAttribute(BSTR name, VARIANT value) override {
        if (const auto fault = Enter("setAttribute")) return ResultOf(*fault);
        if (value.vt != VT_BSTR || TextOf(name).empty()) return E_INVALIDARG;
        for (auto& [known, text] : m_node->attributes) {
            if (known != TextOf(name)) continue;
            text = TextOf(value.bstrVal);
            return S_OK;
        }
        m_node->attributes.emplace_back(TextOf(name), TextOf(value.bstrVal));
        return S_OK;
    }

private:
    // Elements are only ever had from a document or an element: nobody asks for them by an id of their own.
    bool IsOwnInterface(REFIID) const override { return false; }
    const XmlNode* Node() const override { return m_node.get(); }

    std::shared_ptr<XmlNode> m_node;
};

class XmlDocument final : public XmlObject<IXMLDOMDocument> {
public:
    HRESULT STDMETHODCALLTYPE appendChild(IXMLDOMNode*, IXMLDOMNode** newChild) override {
        if (newChild) *newChild = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE put_text(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_documentElement(IXMLDOMElement** element) override {
        if (!element) return E_POINTER;
        *element = nullptr;
        if (const auto fault = Enter("get_documentElement")) return ResultOf(*fault);
        if (!m_root) return S_FALSE;
        *element = new XmlElement(m_root);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE createElement(BSTR tagName, IXMLDOMElement** element) override {
        if (!element) return E_POINTER;
        *element = nullptr;
        if (const auto fault = Enter("createElement")) return ResultOf(*fault);
        if (TextOf(tagName).empty()) return E_INVALIDARG;
        auto node = std::make_shared<XmlNode>();
        node->name = TextOf(tagName);
        *element = new XmlElement(std::move(node));
        return S_OK;
    }
    // Reads one element without attributes and content: "<a></a>" or "<a/>".
    HRESULT STDMETHODCALLTYPE loadXML(BSTR xml, VARIANT_BOOL* isSuccessful) override {
        if (!isSuccessful) return E_POINTER;
        *isSuccessful = VARIANT_FALSE;
        if (const auto fault = Enter("loadXML")) return ResultOf(*fault);
        m_root.reset();
        const std::wstring text(TextOf(xml));
        const std::size_t end = text.find_first_of(L" />", 1);
        if (text.empty() || text[0] != L'<' || end == text.npos || end == 1) return S_FALSE;
        const std::wstring name = text.substr(1, end - 1);
        if (text != L'<' + name + L"></" + name + L'>' && text != L'<' + name + L"/>") return S_FALSE;
        m_root = std::make_shared<XmlNode>();
        m_root->name = name;
        m_root->hasContent = text[end] == L'>';
        *isSuccessful = VARIANT_TRUE;
        return S_OK;
    }
    // There is nothing to validate against, and nothing outside.
    HRESULT STDMETHODCALLTYPE put_validateOnParse(VARIANT_BOOL) override { return Succeed("put_validateOnParse"); }
    HRESULT STDMETHODCALLTYPE put_resolveExternals(VARIANT_BOOL) override { return Succeed("put_resolveExternals"); }

private:
    static HRESULT Succeed(const char* call) {
        const auto fault = Enter(call);
        return fault ? ResultOf(*fault) : S_OK;
    }
    bool IsOwnInterface(REFIID riid) const override { return IsEqualGUID(riid, IidOf<IXMLDOMDocument>()); }
    const XmlNode* Node() const override { return m_root.get(); }

    std::shared_ptr<XmlNode> m_root;
};

}  // namespace

void AddXmlFault(XmlFault fault) {
    const std::lock_guard guard(Xml().lock);
    Xml().faults.push_back(std::move(fault));
}
void ClearXmlFaults() {
    const std::lock_guard guard(Xml().lock);
    Xml().faults.clear();
    Xml().calls.clear();
    Xml().total = 0;
}
unsigned XmlCalls() {
    const std::lock_guard guard(Xml().lock);
    return Xml().total;
}
unsigned XmlCalls(const std::string& call) {
    const std::lock_guard guard(Xml().lock);
    const auto found = Xml().calls.find(call);
    return found == Xml().calls.end() ? 0 : found->second;
}
long XmlReferences() {
    const std::lock_guard guard(Xml().lock);
    return Xml().references;
}

HRESULT CreateXmlDocument(REFCLSID classId, REFIID riid, void** object) {
    if (!IsEqualGUID(classId, DocumentClass)) return REGDB_E_CLASSNOTREG;
    if (const auto fault = Enter("CoCreateInstance")) return ResultOf(*fault);
    auto* document = new XmlDocument;
    const HRESULT result = document->QueryInterface(riid, object);
    document->Release();
    return result;
}

HRESULT XmlClassFromProgId(const wchar_t* programId, CLSID* classId) {
    if (!programId || std::wstring_view(programId) != L"Msxml2.DOMDocument.3.0") return CO_E_CLASSSTRING;
    if (const auto fault = Enter("CLSIDFromProgID")) return ResultOf(*fault);
    *classId = DocumentClass;
    return S_OK;
}

}  // namespace Simulated
