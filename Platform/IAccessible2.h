// IAccessible2, the published extension of Active Accessibility, declared here because no SDK at hand carries
// it. The order of the virtual functions is the binary contract.
#pragma once

struct IAccessibleRelation;

enum IA2ScrollType : int {
    IA2_SCROLL_TYPE_TOP_LEFT, IA2_SCROLL_TYPE_BOTTOM_RIGHT, IA2_SCROLL_TYPE_TOP_EDGE, IA2_SCROLL_TYPE_BOTTOM_EDGE,
    IA2_SCROLL_TYPE_LEFT_EDGE, IA2_SCROLL_TYPE_RIGHT_EDGE, IA2_SCROLL_TYPE_ANYWHERE
};
enum IA2CoordinateType : int { IA2_COORDTYPE_SCREEN_RELATIVE, IA2_COORDTYPE_PARENT_RELATIVE };
enum IA2TextBoundaryType : int {
    IA2_TEXT_BOUNDARY_CHAR, IA2_TEXT_BOUNDARY_WORD, IA2_TEXT_BOUNDARY_SENTENCE, IA2_TEXT_BOUNDARY_PARAGRAPH,
    IA2_TEXT_BOUNDARY_LINE, IA2_TEXT_BOUNDARY_ALL
};
struct IA2Locale { BSTR language; BSTR country; BSTR variant; };
struct IA2TextSegment { BSTR text; LONG start; LONG end; };
using AccessibleStates = LONG;

struct IAccessible2 : IAccessible {
    virtual HRESULT STDMETHODCALLTYPE get_nRelations(LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_relation(LONG index, IAccessibleRelation** relation) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_relations(LONG capacity, IAccessibleRelation** relations, LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE role(LONG* role) = 0;
    virtual HRESULT STDMETHODCALLTYPE scrollTo(IA2ScrollType type) = 0;
    virtual HRESULT STDMETHODCALLTYPE scrollToPoint(IA2CoordinateType type, LONG x, LONG y) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_groupPosition(LONG* level, LONG* similar, LONG* position) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_states(AccessibleStates* states) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_extendedRole(BSTR* role) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_localizedExtendedRole(BSTR* role) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nExtendedStates(LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_extendedStates(LONG capacity, BSTR** states, LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_localizedExtendedStates(LONG capacity, BSTR** states, LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_uniqueID(LONG* id) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_windowHandle(HWND* window) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_indexInParent(LONG* index) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_locale(IA2Locale* locale) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_attributes(BSTR* attributes) = 0;
};

struct IAccessibleText : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE addSelection(LONG start, LONG end) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_attributes(LONG offset, LONG* start, LONG* end, BSTR* attributes) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_caretOffset(LONG* offset) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_characterExtents(LONG offset, IA2CoordinateType type, LONG* x, LONG* y, LONG* width, LONG* height) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nSelections(LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_offsetAtPoint(LONG x, LONG y, IA2CoordinateType type, LONG* offset) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_selection(LONG index, LONG* start, LONG* end) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_text(LONG start, LONG end, BSTR* text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_textBeforeOffset(LONG offset, IA2TextBoundaryType type, LONG* start, LONG* end, BSTR* text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_textAfterOffset(LONG offset, IA2TextBoundaryType type, LONG* start, LONG* end, BSTR* text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_textAtOffset(LONG offset, IA2TextBoundaryType type, LONG* start, LONG* end, BSTR* text) = 0;
    virtual HRESULT STDMETHODCALLTYPE removeSelection(LONG index) = 0;
    virtual HRESULT STDMETHODCALLTYPE setCaretOffset(LONG offset) = 0;
    virtual HRESULT STDMETHODCALLTYPE setSelection(LONG index, LONG start, LONG end) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nCharacters(LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE scrollSubstringTo(LONG start, LONG end, IA2ScrollType type) = 0;
    virtual HRESULT STDMETHODCALLTYPE scrollSubstringToPoint(LONG start, LONG end, IA2CoordinateType type, LONG x, LONG y) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_newText(IA2TextSegment* text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_oldText(IA2TextSegment* text) = 0;
};
