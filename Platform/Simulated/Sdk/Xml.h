// The document object model of XML, as far as the product calls it. The interfaces of the real one have many more
// functions; their order matters only there.
#pragma once

#include "Platform/Simulated/Sdk/Automation.h"

struct IXMLDOMNode : IDispatch {
    // Answers the new child if somebody wants it.
    virtual HRESULT STDMETHODCALLTYPE appendChild(IXMLDOMNode* child, IXMLDOMNode** newChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_text(BSTR text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_xml(BSTR* xml) = 0;
};

struct IXMLDOMElement : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE setAttribute(BSTR name, VARIANT value) = 0;
};

struct IXMLDOMDocument : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_documentElement(IXMLDOMElement** element) = 0;
    virtual HRESULT STDMETHODCALLTYPE createElement(BSTR tagName, IXMLDOMElement** element) = 0;
    virtual HRESULT STDMETHODCALLTYPE loadXML(BSTR xml, VARIANT_BOOL* isSuccessful) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_validateOnParse(VARIANT_BOOL isValidating) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_resolveExternals(VARIANT_BOOL isResolving) = 0;
};
