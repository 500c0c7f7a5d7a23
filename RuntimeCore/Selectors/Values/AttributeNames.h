// The names of attributes, for the whole product; some belong to no tag of this library.
#pragma once

#include "Common/include/CComBSTR.h"
#include "Common/include/CString.h"

namespace Zorvex {

// One name in both forms in which it is asked for, so that neither kind of interface costs a conversion.
class AttributeName {
public:
    explicit AttributeName(const wchar_t* text) : m_text(text), m_bstr(text) {}

    const CString& Text() const noexcept { return m_text; }
    // Stays the constant's.
    BSTR Bstr() const noexcept { return m_bstr; }
    operator const CString&() const noexcept { return m_text; }
    operator std::wstring_view() const noexcept { return m_text; }

private:
    CString m_text;
    CComBSTR m_bstr;
};

namespace AttributeNames {

inline const AttributeName App{L"app"};
inline const AttributeName Cls{L"cls"};
inline const AttributeName Title{L"title"};
inline const AttributeName Aaname{L"aaname"};
inline const AttributeName Ctrlname{L"ctrlname"};
inline const AttributeName Ctrlid{L"ctrlid"};
inline const AttributeName Idx{L"idx"};
inline const AttributeName Tid{L"tid"};
inline const AttributeName Pid{L"pid"};
inline const AttributeName Gid{L"gid"};
inline const AttributeName Role{L"role"};
inline const AttributeName Aastate{L"aastate"};
inline const AttributeName RowName{L"rowName"};
inline const AttributeName Name{L"name"};
inline const AttributeName Javastate{L"javastate"};
inline const AttributeName Virtualname{L"virtualname"};
inline const AttributeName Orientation{L"orientation"};
inline const AttributeName Content{L"content"};
inline const AttributeName Header{L"header"};
inline const AttributeName Col{L"col"};
inline const AttributeName Row{L"row"};
inline const AttributeName Colspan{L"colspan"};
inline const AttributeName Rowspan{L"rowspan"};
inline const AttributeName TableRow{L"tableRow"};
inline const AttributeName TableCol{L"tableCol"};
inline const AttributeName ColName{L"colName"};
inline const AttributeName Command{L"command"};
inline const AttributeName Ibcommand{L"ibcommand"};
inline const AttributeName Datastr{L"datastr"};
inline const AttributeName AutoItemType{L"autoItemType"};
inline const AttributeName AutoItemStatus{L"autoItemStatus"};
inline const AttributeName AutoId{L"autoId"};
inline const AttributeName AutoName{L"autoName"};
inline const AttributeName AutoHelpText{L"autoHelpText"};
inline const AttributeName ColTooltip{L"colTooltip"};
inline const AttributeName Band{L"band"};
inline const AttributeName Bandindex{L"bandindex"};
inline const AttributeName Isexpanded{L"isexpanded"};
inline const AttributeName Persistid{L"persistid"};
inline const AttributeName IsThreeState{L"isThreeState"};
inline const AttributeName Groupname{L"groupname"};
inline const AttributeName Url{L"url"};
inline const AttributeName Htmlwindowname{L"htmlwindowname"};
inline const AttributeName Mobiledata{L"mobiledata"};
inline const AttributeName Automationid{L"automationid"};
inline const AttributeName Labeledby{L"labeledby"};
inline const AttributeName Up{L"up"};
inline const AttributeName Next{L"next"};
inline const AttributeName Prev{L"prev"};
inline const AttributeName Tag{L"tag"};
inline const AttributeName Type{L"type"};
inline const AttributeName Text{L"text"};
inline const AttributeName Rawtext{L"rawtext"};
inline const AttributeName Tooltip{L"tooltip"};
inline const AttributeName Dock{L"dock"};
inline const AttributeName Source{L"source"};
inline const AttributeName Id{L"id"};
inline const AttributeName Uid{L"uid"};
inline const AttributeName Leafid{L"leafid"};
inline const AttributeName Appid{L"appid"};
inline const AttributeName Isremoteapp{L"isremoteapp"};
inline const AttributeName Relpath{L"relpath"};
inline const AttributeName ItemId{L"itemId"};
inline const AttributeName SapClient{L"sapClient"};
inline const AttributeName SapLanguage{L"sapLanguage"};
inline const AttributeName SapProgram{L"sapProgram"};
inline const AttributeName SapScreen{L"sapScreen"};
inline const AttributeName SapSession{L"sapSession"};
inline const AttributeName SapSysName{L"sapSysName"};
inline const AttributeName SapSysNumber{L"sapSysNumber"};
inline const AttributeName SapSysSessionId{L"sapSysSessionId"};
inline const AttributeName SapTransaction{L"sapTransaction"};
inline const AttributeName SapUser{L"sapUser"};
inline const AttributeName Bsid{L"bsid"};
inline const AttributeName Excludehwnd{L"excludehwnd"};
inline const AttributeName Accelkey{L"accelkey"};
inline const AttributeName Acskey{L"acskey"};
inline const AttributeName Roleint{L"roleint"};
inline const AttributeName HelpText{L"helpText"};
inline const AttributeName LegacyAccHelp{L"legacyAccHelp"};
inline const AttributeName Enabled{L"enabled"};
inline const AttributeName Kbfocus{L"kbfocus"};
inline const AttributeName Ispwd{L"ispwd"};
inline const AttributeName Itemstatus{L"itemstatus"};
inline const AttributeName Itemtype{L"itemtype"};
inline const AttributeName Rtid{L"rtid"};
inline const AttributeName AccessibleClass{L"accessibleClass"};
inline const AttributeName HasTableAncestor{L"hasTableAncestor"};
inline const AttributeName BackgroundColor{L"backgroundColor"};
inline const AttributeName ForegroundColor{L"foregroundColor"};
inline const AttributeName AccessibleName{L"accessibleName"};
inline const AttributeName AccessibleDescription{L"accessibleDescription"};
inline const AttributeName StatusTip{L"statusTip"};
inline const AttributeName ScreenRect{L"screenRect"};
inline const AttributeName Value{L"value"};

// Names that never stand in a selector: they pass between the search of rows and columns and its callers.
inline constexpr const wchar_t* kRowIndex = L"__zorvex_row_index";
inline constexpr const wchar_t* kColumnIndex = L"__zorvex_col_index";
inline constexpr const wchar_t* kCssFilter = L"__zorvex_css_filter";

}  // namespace AttributeNames

}  // namespace Zorvex
