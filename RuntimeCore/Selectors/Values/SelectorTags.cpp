// The attribute tables. An entry's place is its member's; names are looked up in code-unit order.
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

#include "RuntimeCore/Selectors/Values/AttributeNames.h"

namespace Zorvex {

namespace {

using namespace AttributeNames;

constexpr AttributeValueKind kText = AttributeValueKind::String;
constexpr AttributeValueKind kNumber = AttributeValueKind::Number;

}  // namespace

// `pid` stands twice, on purpose: the first entry wins, so the member behind it has no name and is never set.
const AttributeTable& WndTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {App, kText}, {Cls, kText}, {Title, kText}, {Aaname, kText}, {Ctrlname, kText}, {Ctrlid, kText},
        {Idx, kNumber}, {Tid, kNumber}, {Pid, kNumber}, {Pid, kNumber}, {Appid, kText}, {Isremoteapp, kNumber},
        {Aastate, kText}, {SapClient, kText}, {SapLanguage, kText}, {SapProgram, kText}, {SapScreen, kNumber},
        {SapSession, kNumber}, {SapSysName, kText}, {SapSysNumber, kNumber}, {SapSysSessionId, kText},
        {SapTransaction, kText}, {SapUser, kText}});
    return table;
}

const AttributeTable& AaTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {Role, kText}, {Name, kText}, {Automationid, kText}, {Labeledby, kText}, {Aastate, kText},
        {Virtualname, kText}, {Text, kText}, {HelpText, kText}, {RowName, kText}, {Idx, kNumber}});
    return table;
}

const AttributeTable& JavaTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {Name, kText}, {Role, kText}, {Virtualname, kText}, {RowName, kText}, {ColName, kText}, {Cls, kText},
        {AccessibleClass, kText}, {Javastate, kText}, {Idx, kNumber}, {TableRow, kNumber}, {TableCol, kNumber},
        {HasTableAncestor, kNumber}, {BackgroundColor, kText}, {ForegroundColor, kText}});
    return table;
}

const AttributeTable& HtmlTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {Url, kText}, {Htmlwindowname, kText}, {Mobiledata, kText}, {App, kText}, {Title, kText}, {Idx, kNumber},
        {Pid, kNumber}, {Tid, kNumber}, {Gid, kNumber}, {Excludehwnd, kNumber}, {Bsid, kNumber},
        {Isremoteapp, kNumber}});
    return table;
}

const AttributeTable& WebCtrlTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {Tag, kText}, {Idx, kNumber}});
    return table;
}

const AttributeTable& UiAutoTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {Accelkey, kText}, {Acskey, kText}, {Automationid, kText}, {Cls, kText}, {Roleint, kText},
        {HelpText, kText}, {LegacyAccHelp, kText}, {Enabled, kText}, {Kbfocus, kText}, {Ispwd, kText},
        {Itemstatus, kText}, {Itemtype, kText}, {Role, kText}, {Name, kText}, {Pid, kText}, {Rtid, kText},
        {TableRow, kNumber}, {TableCol, kNumber}, {RowName, kText}, {ColName, kText}, {Idx, kNumber}});
    return table;
}

const AttributeTable& SLTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {Role, kText}, {Name, kText}, {Text, kText}, {Idx, kNumber}});
    return table;
}

const AttributeTable& NavigationTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {Up, kNumber}, {Next, kNumber}, {Prev, kNumber}});
    return table;
}

const AttributeTable& SAPTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {Id, kText}, {Leafid, kText}, {Idx, kNumber}, {TableRow, kNumber}, {TableCol, kNumber}, {ColName, kText},
        {ColTooltip, kText}, {Relpath, kText}, {ItemId, kText}, {Text, kText}, {Tooltip, kText}, {Type, kText}});
    return table;
}

// `pid` stands twice, on purpose: the first entry wins, so the member behind it has no name and is never set.
const AttributeTable& RdpTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {App, kText}, {Cls, kText}, {Title, kText}, {Aaname, kText}, {Ctrlname, kText}, {Ctrlid, kText},
        {Idx, kNumber}, {Tid, kNumber}, {Pid, kNumber}, {Pid, kNumber}, {Appid, kText}, {Isremoteapp, kNumber},
        {Aastate, kText}});
    return table;
}

const AttributeTable& RdpAppTag::StaticTable() {
    static const AttributeTable table = BuildTable({});
    return table;
}

const AttributeTable& QtTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {Name, kText}, {Role, kText}, {Tooltip, kText}, {Idx, kNumber}, {AccessibleName, kText},
        {StatusTip, kText}, {Text, kText}, {Rawtext, kText}});
    return table;
}

const AttributeTable& WpfTag::StaticTable() {
    static const AttributeTable table = BuildTable({
        {Type, kText}, {Name, kText}, {Uid, kText}, {Header, kText}, {Automationid, kText}, {Content, kText},
        {Text, kText}, {Tooltip, kText}, {Dock, kText}, {Source, kText}, {Labeledby, kText}, {Groupname, kText},
        {Orientation, kText}, {RowName, kText}, {ColName, kText}, {Command, kText}, {Ibcommand, kText},
        {Datastr, kText}, {AutoItemType, kText}, {AutoItemStatus, kText}, {AutoId, kText}, {AutoName, kText},
        {AutoHelpText, kText}, {Col, kNumber}, {Row, kNumber}, {Colspan, kNumber}, {Rowspan, kNumber},
        {Band, kNumber}, {Bandindex, kNumber}, {Isexpanded, kNumber}, {Persistid, kNumber},
        {IsThreeState, kNumber}, {Idx, kNumber}});
    return table;
}

// Built at load, so that no request pays for it and requests only read.
[[maybe_unused]] const AttributeTable* const g_tables[] = {
    &WndTag::StaticTable(),
    &AaTag::StaticTable(),
    &JavaTag::StaticTable(),
    &HtmlTag::StaticTable(),
    &WebCtrlTag::StaticTable(),
    &UiAutoTag::StaticTable(),
    &SLTag::StaticTable(),
    &NavigationTag::StaticTable(),
    &SAPTag::StaticTable(),
    &RdpTag::StaticTable(),
    &RdpAppTag::StaticTable(),
    &QtTag::StaticTable(),
    &WpfTag::StaticTable()};

}  // namespace Zorvex
