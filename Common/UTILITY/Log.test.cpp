#include "Common/include/Log.h"

#include <gtest/gtest.h>

#include "Common/include/CComBSTR.h"
#include "Common/include/DTCounter.h"
#include "Common/include/SafeObject.h"
#include "Common/include/Timer.h"
#include "Common/include/VariantEquals.h"
#include "Common/include/CComVariant.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::LogCapture;

HRESULT FailsOn(int condition) {
    if (condition == 1) return ExpectationNotMet("count > 0", "%s: no children", "FailsOn");
    if (condition == 2) return ParameterConditionNotMet("pAcc != nullptr", "null object");
    return CallFailed("pAcc->get_accName(child, &name)", DISP_E_MEMBERNOTFOUND, "%s: name of %d failed", "FailsOn", 7);
}

TEST(Log, ErrorShapesGiveTheirCodesAndTexts) {
    LogCapture log;
    EXPECT_EQ(FailsOn(1), E_FAIL);
    EXPECT_EQ(FailsOn(2), E_INVALIDARG);
    EXPECT_EQ(FailsOn(3), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                               "E [FailsOn] Expectation not met: count > 0 | FailsOn: no children",
                               "E [FailsOn] Param Condition not met: pAcc != nullptr | null object",
                               "E [FailsOn] pAcc->get_accName(child, &name) | HRESULT 80020003 | FailsOn: name of 7 failed"}));
}

TEST(Log, PercentSignsInAMessageAreNotFormattedTwice) {
    LogCapture log;
    ExpectationNotMet("a % b", "%s", "50%d");
    EXPECT_TRUE(log.Contains("Expectation not met: a % b | 50%d")) << log.Text();
}

TEST(Log, LambdaIsNamedWithABlank) {
    LogCapture log;
    [] { LogError("inside"); }();
    [] { LogStream(Severity::Warning) << "stream"; }();
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{"E [operator ()] inside", "W [operator ()] stream"}));
}

TEST(Log, WideFormatsAreFormattedInUtf16) {
    LogCapture log;
    LogWarning(L"\u00e4 %s %ls", L"wide", "narrow");
    EXPECT_TRUE(log.Contains("\xC3\xA4 wide narrow")) << log.Text();
}

TEST(Log, MessageOfFiveThousandCharactersComesOutWith4095) {
    LogCapture log;
    LogError("%s", std::string(5'000, 'x'));
    LogError(L"%s", std::wstring(5'000, L'y'));
    const auto lines = log.Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[0].ends_with("] " + std::string(4'095, 'x')));
    EXPECT_TRUE(lines[1].ends_with("] " + std::string(4'095, 'y')));
}

TEST(Log, StreamLinesAreNotCut) {
    LogCapture log;
    LogStream(Severity::Info) << std::string(5'000, 'x');
    EXPECT_TRUE(log.Contains(std::string(5'000, 'x')));
}

TEST(Log, StreamTakesBothKindsOfTextAndManipulators) {
    LogCapture log;
    const CComBSTR text(L"bstr");
    const wchar_t* none = nullptr;
    wchar_t buffer[] = L"array";
    LogStream(Severity::Verbose) << "n " << 5 << ' ' << std::hex << 255 << L" \u00e4 " << std::wstring(L"w ") << text << ' ' << none << ' ' << buffer
                                 << std::wstring_view(L" view");
    EXPECT_EQ(log.Lines().at(0).substr(log.Lines().at(0).find("] ") + 2), "n 5 ff \xC3\xA4 w bstr (null) array view");
}

TEST(Log, LevelDecidesWhichSeveritiesComeOut) {
    LogCapture log(L"WARNING");
    LogVerbose("v");
    LogInfo("i");
    LogWarning("w");
    LogError("e");
    LogAt<char>(Severity::Fatal, "f");
    EXPECT_EQ(log.Count("] v") + log.Count("] i"), 0u) << log.Text();
    EXPECT_EQ(log.Lines().size(), 3u) << log.Text();
}

TEST(Log, CapturesNestAndRestore) {
    LogCapture outer;
    {
        LogCapture inner;
        LogError("inner");
        EXPECT_TRUE(inner.Contains("inner"));
    }
    LogError("outer");
    EXPECT_FALSE(outer.Contains("inner"));
    EXPECT_TRUE(outer.Contains("outer"));
    outer.Clear();
    EXPECT_TRUE(outer.Lines().empty());
}

TEST(LastErrorText, KnownCodeHasTheSystemsMessageAndUnknownOneTheSubstitute) {
    EXPECT_EQ(LastErrorText(ERROR_ACCESS_DENIED).substr(0, 23), "Last error: 0x00000005(");
    EXPECT_EQ(LastErrorText(ERROR_ACCESS_DENIED).back(), ')');
    EXPECT_EQ(LastErrorText(ERROR_ACCESS_DENIED).find('\n'), std::string::npos);
    EXPECT_EQ(LastErrorText(0x2FFFFFFF), "[Error while formatting last error]");
}

TEST(DTCounter, LogsItsNameAndTheMilliseconds) {
    LogCapture log;
    { DTCounter counter("Search"); }
    { DTCounter counter; }
    const auto lines = log.Lines();
    ASSERT_EQ(lines.size(), 2u) << log.Text();
    EXPECT_TRUE(lines[0].starts_with("I [Log] Counter Search - ")) << lines[0];
    EXPECT_TRUE(lines[0].ends_with(" miliseconds"));
    EXPECT_TRUE(lines[1].starts_with("I [Log] Counter unknown - ")) << lines[1];
}

TEST(DTCounter, KeepsSixtyFourCharactersOfItsName) {
    LogCapture log;
    { DTCounter counter(std::string(100, 'n').c_str()); }
    EXPECT_TRUE(log.Contains("Counter " + std::string(64, 'n') + " - ")) << log.Text();
}

TEST(SafeObject, CloseThatFailsWarnsAndClearsTheHandle) {
    LogCapture log;
    // No handle of any process: Windows gives multiples of four, and never this high.
    SafeObject object(reinterpret_cast<HANDLE>(std::uintptr_t{0x7FFFFFF0}));
    EXPECT_TRUE(object);
    object.Close();
    EXPECT_FALSE(object);
    object.Close();
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{"W [Close] Closing safe handle failed, last error=6"}));
}

TEST(SafeObject, HandsOverWithoutClosing) {
    LogCapture log;
    SafeObject first(reinterpret_cast<HANDLE>(std::uintptr_t{0x7FFFFFF0}));
    SafeObject second(std::move(first));
    EXPECT_FALSE(first);
    SafeObject third;
    third = std::move(second);
    EXPECT_NE(third.Detach(), nullptr);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(Timer, TimeThatIsOverNeverGoesBelowZero) {
    Timer timer(-5);
    EXPECT_EQ(timer.Remaining(), 0);
    EXPECT_TRUE(timer.IsOver());
    EXPECT_GT(Timer(1'000'000).Remaining(), 990'000);
}

VARIANT Make(VARTYPE type, LONGLONG bits) {
    VARIANT variant{};
    variant.vt = type;
    variant.llVal = bits;
    return variant;
}

TEST(VariantEquals, SmallUnsignedTypesCompareByTheirOwnBitsOnly) {
    EXPECT_TRUE(VariantEquals(Make(VT_I1, 0x1FF), Make(VT_I1, 0x2FF)));
    EXPECT_FALSE(VariantEquals(Make(VT_I1, 1), Make(VT_I1, 2)));
    EXPECT_TRUE(VariantEquals(Make(VT_UI2, 0x1FFFF), Make(VT_UI2, 0x2FFFF)));
    EXPECT_FALSE(VariantEquals(Make(VT_UI2, 0x100), Make(VT_UI2, 0)));
    EXPECT_TRUE(VariantEquals(Make(VT_UI4, 0x1FFFFFFFF), Make(VT_UI4, 0x2FFFFFFFF)));
    EXPECT_FALSE(VariantEquals(Make(VT_UI4, 0x10000), Make(VT_UI4, 0)));
    EXPECT_TRUE(VariantEquals(Make(VT_UI8, -1), Make(VT_UI8, -1)));
    EXPECT_FALSE(VariantEquals(Make(VT_UI8, 0x100000000), Make(VT_UI8, 0)));
}

TEST(VariantEquals, NullsAreEqualAndTypesMustAgree) {
    EXPECT_TRUE(VariantEquals(Make(VT_NULL, 0), Make(VT_NULL, 1)));
    EXPECT_FALSE(VariantEquals(Make(VT_NULL, 0), Make(VT_EMPTY, 0)));
    EXPECT_TRUE(VariantEquals(Make(VT_EMPTY, 0), Make(VT_EMPTY, 0)));
    EXPECT_FALSE(VariantEquals(Make(VT_I4, 5), Make(VT_I2, 5)));
    EXPECT_TRUE(VariantEquals(Make(VT_I4, 5), Make(VT_I4, 5)));
    EXPECT_FALSE(VariantEquals(Make(VT_I4, 5), Make(VT_I4, 6)));
    EXPECT_FALSE(VariantEquals(Make(VT_UNKNOWN, 0), Make(VT_UNKNOWN, 0)));
}

TEST(VariantEquals, StringsDifferByCaseAndNullIsEmpty) {
    EXPECT_TRUE(VariantEquals(CComVariant(L"Ok"), CComVariant(L"Ok")));
    EXPECT_FALSE(VariantEquals(CComVariant(L"Ok"), CComVariant(L"OK")));
    EXPECT_TRUE(VariantEquals(CComVariant(L""), Make(VT_BSTR, 0)));
    EXPECT_TRUE(BstrEquals(nullptr, CComBSTR(L"")));
    EXPECT_FALSE(BstrEquals(nullptr, CComBSTR(L"a")));
}

}  // namespace
}  // namespace Zorvex
