// Documents of Internet Explorer. Their members are reached by name, through IDispatch, so the long published
// interfaces stand here by their names and ids alone. IHTMLWindow7 is declared as far as it is called: older documents
// don't know its members by name. The order of its functions is the binary contract.
#pragma once

struct IHTMLElement : IDispatch {};
struct IHTMLBodyElement : IDispatch {};
struct IHTMLDocument2 : IDispatch {};
struct IHTMLWindow2 : IDispatch {};

struct IHTMLWindow7 : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE getSelection(IUnknown** selection) = 0;
    virtual HRESULT STDMETHODCALLTYPE getComputedStyle(IUnknown* node, BSTR pseudoElement, IUnknown** style) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_styleMedia(IUnknown** media) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_performance(VARIANT performance) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_performance(VARIANT* performance) = 0;
    // CSS pixels.
    virtual HRESULT STDMETHODCALLTYPE get_innerWidth(LONG* width) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_innerHeight(LONG* height) = 0;
};
