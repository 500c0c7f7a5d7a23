// The thirteen classes of tags, one for each technology that a selector can name. The search of this library looks at
// AaTag alone; the others travel whole.
#pragma once

#include "RuntimeCore/Selectors/Values/DynamicSelectorTagBase.h"
#include "RuntimeCore/Selectors/Values/StaticSelectorTagBase.h"

namespace Zorvex {

class WndTag final : public StaticSelectorTagBase<WndTag, 23> {
public:
    static constexpr std::uint32_t kSerializationId = 20001;
    static constexpr TagKind kTagKind = TagKind::Wnd;
    static const AttributeTable& StaticTable();
};

class AaTag final : public StaticSelectorTagBase<AaTag, 10> {
public:
    static constexpr std::uint32_t kSerializationId = 20010;
    static constexpr TagKind kTagKind = TagKind::Aa;
    static const AttributeTable& StaticTable();
};

class JavaTag final : public StaticSelectorTagBase<JavaTag, 14> {
public:
    static constexpr std::uint32_t kSerializationId = 20003;
    static constexpr TagKind kTagKind = TagKind::Java;
    static const AttributeTable& StaticTable();
};

class HtmlTag final : public StaticSelectorTagBase<HtmlTag, 12> {
public:
    static constexpr std::uint32_t kSerializationId = 20002;
    static constexpr TagKind kTagKind = TagKind::Html;
    static const AttributeTable& StaticTable();
};

class WebCtrlTag final : public DynamicSelectorTagBase<WebCtrlTag, 2> {
public:
    // A digit is missing beside the neighbours, and stays missing: that is how it travels.
    static constexpr std::uint32_t kSerializationId = 2009;
    static constexpr TagKind kTagKind = TagKind::WebCtrl;
    static const AttributeTable& StaticTable();
};

class UiAutoTag final : public StaticSelectorTagBase<UiAutoTag, 21> {
public:
    static constexpr std::uint32_t kSerializationId = 20008;
    static constexpr TagKind kTagKind = TagKind::UiAuto;
    static const AttributeTable& StaticTable();
};

class SLTag final : public StaticSelectorTagBase<SLTag, 4> {
public:
    static constexpr std::uint32_t kSerializationId = 20007;
    static constexpr TagKind kTagKind = TagKind::SL;
    static const AttributeTable& StaticTable();
};

class NavigationTag final : public StaticSelectorTagBase<NavigationTag, 3> {
public:
    static constexpr std::uint32_t kSerializationId = 20004;
    static constexpr TagKind kTagKind = TagKind::Navigation;
    static const AttributeTable& StaticTable();
};

class SAPTag final : public StaticSelectorTagBase<SAPTag, 12> {
public:
    static constexpr std::uint32_t kSerializationId = 20006;
    static constexpr TagKind kTagKind = TagKind::SAP;
    static const AttributeTable& StaticTable();
};

class RdpTag final : public StaticSelectorTagBase<RdpTag, 13> {
public:
    static constexpr std::uint32_t kSerializationId = 20005;
    static constexpr TagKind kTagKind = TagKind::Rdp;
    static const AttributeTable& StaticTable();
};

class RdpAppTag final : public StaticSelectorTagBase<RdpAppTag, 0> {
public:
    // Has no attributes; can be sent but not received.
    static constexpr std::uint32_t kSerializationId = 20011;
    static constexpr TagKind kTagKind = TagKind::RdpApp;
    static const AttributeTable& StaticTable();
};

class QtTag final : public StaticSelectorTagBase<QtTag, 8> {
public:
    static constexpr std::uint32_t kSerializationId = 20012;
    static constexpr TagKind kTagKind = TagKind::Qt;
    static const AttributeTable& StaticTable();
};

class WpfTag final : public StaticSelectorTagBase<WpfTag, 33> {
public:
    static constexpr std::uint32_t kSerializationId = 20013;
    static constexpr TagKind kTagKind = TagKind::Wpf;
    static const AttributeTable& StaticTable();
};

// The texts by which other components write tags and name technologies, in the order of TagKind. An empty name: the
// technology has none.
struct TagNames {
    const wchar_t* tag;
    const wchar_t* technology;
};
inline constexpr TagNames kTagNames[] = {
    {L"wnd", L"win32"}, {L"ctrl", L"aa"},  {L"java", L"java"}, {L"html", L"html"}, {L"webctrl", L"webctrl"},
    {L"uia", L"uia"},   {L"silverlight", L"silverlight"}, {L"nav", L""}, {L"sap", L"sap"}, {L"rdp", L"rdp"},
    {L"rdpapp", L""},   {L"qt", L"qt"},    {L"wpf", L"wpf"}};
inline constexpr const wchar_t* kTopPrefix = L"top:";

}  // namespace Zorvex
