#include "RuntimeCore/IA2Tools.h"

#include <gtest/gtest.h>

#include <cwctype>

#include "RuntimeCore/IA2ToolsAttributes.h"
#include "RuntimeCore/IA2ToolsHtml.h"
#include "RuntimeCore/IA2ToolsText.h"
#include "RuntimeCore/IA2ToolsTrigger.h"
#include "tests/Support/FakeElement.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::IA2Tools {
namespace {

using Testing::FakeElement;
using Testing::LogCapture;
using Testing::VariantAnswer;

using IA2Access = Testing::FakeElementTest;
using IA2Attributes = Testing::FakeElementTest;
using IA2Html = Testing::FakeElementTest;
using IA2Trigger = Testing::FakeElementTest;
using IA2Text = Testing::FakeElementTest;

TEST_F(IA2Access, AsksTheServiceProviderForIAccessible2) {
    auto element = FakeElement::Make();
    CComPtr<IAccessible2> ia2;
    EXPECT_EQ(GetIA2FromAccElem(element, ia2), S_OK);
    EXPECT_EQ(ia2.p, static_cast<IAccessible2*>(element.p));
}

TEST_F(IA2Access, PassesTheResultOfTheServiceOnWithoutALine) {
    LogCapture log;
    auto element = FakeElement::Make();
    CComPtr<IAccessible2> ia2;
    element->serviceResult = E_NOINTERFACE;
    EXPECT_EQ(GetIA2FromAccElem(element, ia2), E_NOINTERFACE);
    element->serviceResult = S_OK;
    element->offersIA2 = false;
    EXPECT_EQ(GetIA2FromAccElem(element, ia2), S_OK);
    EXPECT_FALSE(ia2);
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST_F(IA2Access, LogsAMissingServiceProvider) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->offersServices = false;
    CComPtr<IAccessible2> ia2;
    EXPECT_EQ(GetIA2FromAccElem(element, ia2), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("pAccElem->QueryInterface(&spServiceProvider) | HRESULT 80004002 | "
                             "GetIA2FromAccElem: Cannot obtain IServiceProvider from IAccessible")) << log.Text();
}

TEST_F(IA2Access, EveryOperationRefusesANullElementUnderItsOwnName) {
    CComPtr<IAccessible2> ia2;
    CComPtr<IAccessible> html;
    std::list<CComPtr<IAccessible>> children;
    LONG number = 0;
    bool isHtml = false;
    CString text;
    CComBSTR string;
    AttributeMap attributes;
    const auto expectLine = [](HRESULT result, LogCapture& log, const char* line) {
        EXPECT_EQ(result, E_INVALIDARG);
        EXPECT_EQ(log.Count(line), 1u) << line << "\n" << log.Text();
        log.Clear();
    };
    LogCapture log;
    const char* const general = "Param Condition not met: pAccElem | GetIA2FromAccElem: IAccessible pointer is null";
    expectLine(GetIA2FromAccElem(nullptr, ia2), log, general);
    expectLine(ScrollTo(nullptr), log, general);
    expectLine(GetRole(nullptr, number), log, "Param Condition not met: pAccElem | IA2Tools::GetRole IAccessible pointer is null");
    expectLine(GetState(nullptr, number), log, "Param Condition not met: pAccElem | IA2Tools::GetState IAccessible pointer is null");
    expectLine(GetUniqueID(nullptr, number), log, "Param Condition not met: pAccElem | IA2Tools::GetUniqueID IAccessible pointer is null");
    expectLine(GetAccChildList(nullptr, children), log, "Param Condition not met: pAccElem | IA2Tools::GetAccChildList IAccessible pointer is null");
    expectLine(GetAllAttributes(nullptr, attributes), log, "Param Condition not met: pAccElem | IA2Tools::GetAllAttributes IAccessible pointer is null");
    expectLine(GetAttribute(nullptr, L"tag", text), log, "Param Condition not met: pAccElem | IA2Tools::GetAttribute IAccessible pointer is null");
    expectLine(IsAccElemHtml(nullptr, isHtml), log, "Param Condition not met: pAccElem | IA2Tools::IsAccElemHtml IAccessible pointer is null");
    expectLine(GetAccElemHtml(nullptr, html), log, "Param Condition not met: pAccElem | IA2Tools::GetAccElemHtml IAccessible pointer is null");
    expectLine(GetText(nullptr, string), log, "Param Condition not met: pAccElem | IA2Tools::GetText IAccessible pointer is null");
    expectLine(TriggerAccChromiumContainer(nullptr), log, "Param Condition not met: spAccContainer | TriggerAccChromiumContainer: IAccessible pointer is null");
}

TEST_F(IA2Access, OneCallOperationsAnswerWhatTheCallAnswers) {
    auto element = FakeElement::Make();
    element->ia2Role = {S_OK, 1025};
    element->ia2States = {S_FALSE, 0x40001};
    element->ia2UniqueId = {E_ACCESSDENIED, 0};
    LONG role = 0, states = 0, id = 0;
    EXPECT_EQ(GetRole(element, role), S_OK);
    EXPECT_EQ(role, 1025);
    EXPECT_EQ(GetState(element, states), S_FALSE);
    EXPECT_EQ(states, 0x40001);
    EXPECT_EQ(GetUniqueID(element, id), E_ACCESSDENIED);
    element->ia2UniqueId = {S_OK, -77};
    EXPECT_EQ(GetUniqueID(element, id), S_OK);
    EXPECT_EQ(id, -77);
    element->scrollResult = E_NOTIMPL;
    EXPECT_EQ(ScrollTo(element), E_NOTIMPL);
    EXPECT_EQ(element->scrolledTo, 6);
}

TEST_F(IA2Access, OneCallOperationsLogAMissingIA2AndScrollToUnderTheNameOfGetText) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->offersIA2 = false;
    element->serviceResult = E_NOINTERFACE;
    LONG number = 0;
    EXPECT_EQ(GetRole(element, number), E_NOINTERFACE);
    EXPECT_EQ(GetState(element, number), E_NOINTERFACE);
    EXPECT_EQ(GetUniqueID(element, number), E_NOINTERFACE);
    EXPECT_EQ(ScrollTo(element), E_NOINTERFACE);
    for (const char* name : {"GetRole", "GetState", "GetUniqueID", "GetText"}) {
        const std::string line = std::string("GetIA2FromAccElem(pAccElem, spIA2) | HRESULT 80004002 | IA2Tools::") + name + " Cannot get IAccessible2";
        EXPECT_EQ(log.Count(line), 1u) << line << "\n" << log.Text();
    }
}

TEST_F(IA2Access, ANullInterfaceAfterSuccessIsAFailure) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->offersIA2 = false;
    LONG number = 0;
    CString text;
    AttributeMap attributes;
    EXPECT_EQ(GetRole(element, number), E_FAIL);
    EXPECT_EQ(ScrollTo(element), E_FAIL);
    EXPECT_EQ(GetAllAttributes(element, attributes), E_FAIL);
    EXPECT_EQ(TriggerAccChromiumContainer(element), E_FAIL);
    EXPECT_TRUE(log.Contains("GetIA2FromAccElem(pAccElem, spIA2) | HRESULT 0 | IA2Tools::GetRole Cannot get IAccessible2")) << log.Text();
}

std::wstring Pairs(std::wstring_view text) {
    AttributeMap attributes;
    attributes.Add(L"left", L"over");
    ParseAttributes(text, attributes);
    std::wstring pairs;
    for (std::size_t i = 0; i < attributes.Size(); ++i) pairs += attributes.NameAt(i) + L"=" + attributes.ValueAt(i) + L"|";
    return pairs;
}

TEST_F(IA2Attributes, NamesAndValuesAreInLowerCase) { EXPECT_EQ(Pairs(L"class:Foo;tag:DIV;"), L"class=foo|tag=div|"); }

TEST_F(IA2Attributes, LowerCaseIsThatOfEveryLanguage) {
    EXPECT_EQ(Pairs(L"\x00DC" L"BER:\x0416\x0391;"), L"\x00FC" L"ber=\x0436\x03B1|");
}

TEST_F(IA2Attributes, AValueThatHoldsAColonStaysWhole) { EXPECT_EQ(Pairs(L"a:b:c;"), L"a=b:c|"); }

TEST_F(IA2Attributes, TheLastPairNeedsNoSemicolon) { EXPECT_EQ(Pairs(L"a:b;c:d"), L"a=b|c=d|"); }

TEST_F(IA2Attributes, ThereAreNoEscapes) { EXPECT_EQ(Pairs(L"a\\:b;c:d;"), L"a\\=b|c=d|"); }

TEST_F(IA2Attributes, AnEmptyValueTakesTheNextPairForItsValue) { EXPECT_EQ(Pairs(L"a:;b:c;"), L"a=b:c|"); }

TEST_F(IA2Attributes, RunsOfDelimitersBeforeATokenAreSkipped) { EXPECT_EQ(Pairs(L":::a:;;;b;c:d"), L"a=b|c=d|"); }

TEST_F(IA2Attributes, ANameWithoutAValueEndsTheList) {
    EXPECT_EQ(Pairs(L"a:b;c"), L"a=b|");
    EXPECT_EQ(Pairs(L"a:b;c:"), L"a=b|");
    EXPECT_EQ(Pairs(L"a:b;c:;;"), L"a=b|");
    EXPECT_EQ(Pairs(L""), L"");
    EXPECT_EQ(Pairs(L":"), L"");
    EXPECT_EQ(Pairs(L";"), L"");
}

TEST_F(IA2Attributes, DuplicatesAreKeptAndTheFirstWins) {
    EXPECT_EQ(Pairs(L"a:1;a:2;"), L"a=1|a=2|");
    auto element = FakeElement::Make();
    element->ia2Attributes = L"a:1;a:2;";
    CString value;
    EXPECT_EQ(GetAttribute(element, L"a", value), S_OK);
    EXPECT_EQ(value, L"1");
}

TEST_F(IA2Attributes, AreFoundInAnyCaseAndAbsentOnesAreEmpty) {
    auto element = FakeElement::Make();
    element->ia2Attributes = L"class:Foo;tag:DIV;";
    CString value = L"left over";
    EXPECT_EQ(GetAttribute(element, L"TAG", value), S_OK);
    EXPECT_EQ(value, L"div");
    EXPECT_EQ(GetAttribute(element, L"id", value), S_OK);
    EXPECT_EQ(value, L"");
    element->ia2Attributes = {};
    EXPECT_EQ(GetAttribute(element, L"tag", value), S_OK);
    EXPECT_EQ(value, L"");
}

TEST_F(IA2Attributes, CountIsLogged) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->ia2Attributes = L"class:Foo;tag:DIV;";
    AttributeMap attributes;
    EXPECT_EQ(GetAllAttributes(element, attributes), S_OK);
    EXPECT_TRUE(log.Contains("IA2Tools::GetAllAttributes End attrCount=2")) << log.Text();
}

TEST_F(IA2Attributes, FailuresAreLoggedAtEachLevel) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->ia2Attributes = E_ACCESSDENIED;
    CString value;
    EXPECT_EQ(GetAttribute(element, L"tag", value), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("spIA2->get_attributes(&bstrAttrAll) | HRESULT 80070005 | IA2Tools::GetAllAttributes IA2->get_attributes(...) failed")) << log.Text();
    EXPECT_TRUE(log.Contains("IA2Tools::GetAllAttributes(pAccElem, mapAttr) | HRESULT 80070005 | IA2Tools::GetAttribute GetAllAttributes failed")) << log.Text();
    element->serviceResult = E_NOINTERFACE;
    log.Clear();
    EXPECT_EQ(GetAttribute(element, L"tag", value), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("GetIA2FromAccElem(pAccElem, spIA2) | HRESULT 80004002 | IA2Tools::GetAllAttributes Cannot get IAccessible2")) << log.Text();
}

TEST_F(IA2Attributes, OfMegabytesAreReadInOneGo) {
    std::wstring text;
    for (int i = 0; i < 300'000; ++i) text += L"name" + std::to_wstring(i) + L":value;";
    AttributeMap attributes;
    ParseAttributes(text, attributes);
    EXPECT_EQ(attributes.Size(), 300'000u);
    const std::wstring delimiters(4'000'000, L':');
    ParseAttributes(delimiters, attributes);
    EXPECT_EQ(attributes.Size(), 0u);
}

// A second reading of the same rule, by characters.
std::wstring PairsByCharacters(std::wstring_view text) {
    std::wstring pairs, token, name;
    std::size_t position = 0;
    for (bool isName = true;; isName = !isName) {
        const wchar_t delimiter = isName ? L':' : L';';
        token.clear();
        while (position < text.size() && text[position] == delimiter) ++position;
        while (position < text.size() && text[position] != delimiter) token += static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(text[position++])));
        if (token.empty()) return pairs;
        if (position < text.size()) ++position;
        if (isName) name = token;
        else pairs += name + L"=" + token + L"|";
    }
}

TEST_F(IA2Attributes, EveryShortStringReadsAsByCharacters) {
    const wchar_t alphabet[] = {L'a', L':', L';', L'B'};
    for (int length = 0; length <= 8; ++length) {
        for (int code = 0; code < 1 << (2 * length); ++code) {
            std::wstring text;
            for (int i = 0; i < length; ++i) text += alphabet[(code >> (2 * i)) & 3];
            ASSERT_EQ(Pairs(text), PairsByCharacters(text)) << std::string(text.begin(), text.end());
        }
    }
}

TEST_F(IA2Html, EveryElementButStaticTextCounts) {
    auto element = FakeElement::Make();
    bool isHtml = false;
    EXPECT_EQ(IsAccElemHtml(element, isHtml), S_OK);
    EXPECT_TRUE(isHtml);
    element->roleAnswer = CComVariant(L"gadget");
    EXPECT_EQ(IsAccElemHtml(element, isHtml), S_OK);
    EXPECT_TRUE(isHtml);
}

TEST_F(IA2Html, StaticTextCountsWithATagAlone) {
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_STATICTEXT;
    bool isHtml = true;
    EXPECT_EQ(IsAccElemHtml(element, isHtml), S_OK);
    EXPECT_FALSE(isHtml);
    element->ia2Attributes = L"tag:span;";
    EXPECT_EQ(IsAccElemHtml(element, isHtml), S_OK);
    EXPECT_TRUE(isHtml);
}

TEST_F(IA2Html, FailuresAreLogged) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->roleAnswer = VariantAnswer::Failure(E_FAIL);
    bool isHtml = false;
    CComPtr<IAccessible> html;
    EXPECT_EQ(GetAccElemHtml(element, html), E_FAIL);
    EXPECT_TRUE(log.Contains("pAccElem->get_accRole(CComVariant(CHILDID_SELF), &varRole) | HRESULT 80004005 | IA2Tools::IsAccElemHtml pAccElem->get_accRole(...) failed")) << log.Text();
    EXPECT_TRUE(log.Contains("IA2Tools::IsAccElemHtml(pAccElem, bIsHtml) | HRESULT 80004005 | IA2Tools::GetAccElemHtml IsAccElemHtml() failed")) << log.Text();
    element->roleAnswer = ROLE_SYSTEM_STATICTEXT;
    element->ia2Attributes = E_FAIL;
    EXPECT_EQ(IsAccElemHtml(element, isHtml), E_FAIL);
    EXPECT_TRUE(log.Contains("IA2Tools::GetAttribute(pAccElem, IA2_ATTRIBUTE_TAG, strTag) | HRESULT 80004005 | IA2Tools::IsAccElemHtml GetAttribute(\"tag\") failed")) << log.Text();
}

TEST_F(IA2Html, TheElementItselfComesOutAsNull) {
    auto element = FakeElement::Make();
    CComPtr<IAccessible> html;
    EXPECT_EQ(GetAccElemHtml(element, html), S_OK);
    EXPECT_FALSE(html);
}

TEST_F(IA2Html, AStaticTextGoesOneStepUpAndNoFurther) {
    LogCapture log;
    auto element = FakeElement::Make();
    auto parent = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_STATICTEXT;
    element->parent = parent;
    CComPtr<IAccessible> html;
    EXPECT_EQ(GetAccElemHtml(element, html), S_OK);
    EXPECT_EQ(html.p, static_cast<IAccessible*>(parent.p));
    EXPECT_TRUE(log.Contains("IA2Tools::GetAccElemHtml End, found AA element corresponding to the HTML element"));
    parent->roleAnswer = ROLE_SYSTEM_STATICTEXT;
    parent->parent = FakeElement::Make();
    EXPECT_EQ(GetAccElemHtml(element, html), E_FAIL);
}

TEST_F(IA2Html, FailuresOfTheParentAreLogged) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_STATICTEXT;
    CComPtr<IAccessible> html;
    element->parentResult = E_ACCESSDENIED;
    EXPECT_EQ(GetAccElemHtml(element, html), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("pAccElem->get_accParent(&spDispParent) | HRESULT 80070005 | IA2Tools::GetAccElemHtml pAccElem->get_accParent(...) failed")) << log.Text();
    element->parentResult = S_OK;
    EXPECT_EQ(GetAccElemHtml(element, html), E_FAIL);
    auto parent = FakeElement::Make();
    element->parent = parent;
    parent->isAccessible = false;
    EXPECT_EQ(GetAccElemHtml(element, html), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("spDispParent->QueryInterface(&out_spAccHtml) | HRESULT 80004002 | IA2Tools::GetAccElemHtml Cannot get parent IAccessible")) << log.Text();
    parent->isAccessible = true;
    parent->roleAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    EXPECT_EQ(GetAccElemHtml(element, html), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("IA2Tools::IsAccElemHtml(out_spAccHtml, bIsHtml) | HRESULT 80070005 | IA2Tools::GetAccElemHtml IsAccElemHtml(parent IAccessible) failed")) << log.Text();
}

TEST_F(IA2Trigger, AsksAContainerRoleStateIA2StatesAndChildCount) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->stateAnswer = LONG{0x100000};
    element->roleAnswer = ROLE_SYSTEM_CLIENT;
    element->childCount = {S_OK, 4};
    EXPECT_EQ(TriggerAccChromiumContainer(element), S_OK);
    EXPECT_EQ(element->calls["get_states"], 1);
    EXPECT_EQ(element->calls["get_accChildCount"], 1);
    EXPECT_TRUE(log.Contains("TriggerAccChromiumContainer: End state=0x00100000 role=0xa childCount=4")) << log.Text();
}

TEST_F(IA2Trigger, EachFailedReadEndsItWithItsLine) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->childCount = {E_FAIL, 0};
    EXPECT_EQ(TriggerAccChromiumContainer(element), E_FAIL);
    EXPECT_TRUE(log.Contains("spIA2Container->get_accChildCount(&nChildCount) | HRESULT 80004005 | TriggerAccChromiumContainer: IA2->get_accChildCount() failed")) << log.Text();
    element->ia2States = {E_FAIL, 0};
    EXPECT_EQ(TriggerAccChromiumContainer(element), E_FAIL);
    EXPECT_EQ(element->calls["get_accChildCount"], 1);
    EXPECT_TRUE(log.Contains("spIA2Container->get_states(&lIA2States) | HRESULT 80004005 | TriggerAccChromiumContainer: IA2->get_states() failed")) << log.Text();
    element->serviceResult = E_NOINTERFACE;
    EXPECT_EQ(TriggerAccChromiumContainer(element), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("IA2Tools::GetIA2FromAccElem(spAccContainer, spIA2Container) | HRESULT 80004002 | TriggerAccChromiumContainer: failed to get IAccessible2")) << log.Text();
    element->stateAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_EQ(TriggerAccChromiumContainer(element), E_FAIL);
    EXPECT_TRUE(log.Contains("spAccContainer->get_accState(CComVariant(CHILDID_SELF), &varState) | HRESULT 80004005 | TriggerAccChromiumContainer: IAcc->get_accState() failed")) << log.Text();
    element->roleAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_EQ(TriggerAccChromiumContainer(element), E_FAIL);
    EXPECT_TRUE(log.Contains("spAccContainer->get_accRole(CComVariant(CHILDID_SELF), &varRole) | HRESULT 80004005 | TriggerAccChromiumContainer: IAcc->get_accRole() failed")) << log.Text();
}

std::wstring TextOf(FakeElement* element, HRESULT expected = S_OK) {
    CComBSTR text(L"left over");
    EXPECT_EQ(GetText(element, text), expected);
    return text.ToString();
}

TEST_F(IA2Text, DropsPlaceholdersAndKeepsTheRestUntrimmed) {
    auto element = FakeElement::Make();
    element->ia2Text = L" a\xFFFC" L"b\xFFFD\n";
    EXPECT_EQ(TextOf(element), L" ab\n");
}

TEST_F(IA2Text, OfPlaceholdersAndBlanksIsEmptyWithALine) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->ia2Text = L"\r\n\t \xFFFC \xFFFD";
    EXPECT_EQ(TextOf(element), L"");
    EXPECT_TRUE(log.Contains("IA2Tools::GetText Return empty text for element composed of replacement and spacing "
                             "characters only. Original length: 7")) << log.Text();
}

TEST_F(IA2Text, OfBlanksAloneIsKept) {
    auto element = FakeElement::Make();
    element->ia2Text = L" \t\n";
    EXPECT_EQ(TextOf(element), L" \t\n");
    element->ia2Text = {};
    EXPECT_EQ(TextOf(element), L"");
}

TEST_F(IA2Text, IsEmptyWithoutTheInterfaces) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->ia2Text = L"abc";
    element->offersText = false;
    EXPECT_EQ(TextOf(element), L"");
    EXPECT_TRUE(log.Contains("IA2Tools::GetText Cannot get IAccessibleText")) << log.Text();
    element->offersIA2 = false;
    log.Clear();
    EXPECT_EQ(TextOf(element), L"");
    EXPECT_TRUE(log.Contains("V [GetText] IA2Tools::GetText Cannot get IAccessible2")) << log.Text();
}

TEST_F(IA2Text, PassesTheCodesOfFailedReadsOn) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->ia2Text = E_ACCESSDENIED;
    EXPECT_EQ(TextOf(element, E_ACCESSDENIED), L"");
    EXPECT_TRUE(log.Contains("spIAText->get_text(0, nLen, &bstrText) | HRESULT 80070005 | IA2Tools::GetText IAccessibleText::get_text(...) failed")) << log.Text();
    element->characterCount = {E_FAIL, 0};
    EXPECT_EQ(TextOf(element, E_FAIL), L"");
    EXPECT_TRUE(log.Contains("spIAText->get_nCharacters(&nLen) | HRESULT 80004005 | IA2Tools::GetText IAccessibleText::get_nCharacters(...) failed")) << log.Text();
}

}  // namespace
}  // namespace Zorvex::IA2Tools
