#include "RuntimeCore/Selectors/Unified/ElementNotFoundError.h"

#include <gtest/gtest.h>

#include "Common/include/Archive.h"
#include "tests/Support/ArchiveBytes.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Search {
namespace {

using Testing::ArchiveOf;
using Testing::ArchiveProblem;
using Testing::PayloadText;
using Testing::Reread;

constexpr HRESULT kTagCode = static_cast<HRESULT>(0x800402EC);
constexpr HRESULT kAllCode = static_cast<HRESULT>(0x800402ED);
constexpr HRESULT kValueCode = static_cast<HRESULT>(0x800402EE);

TEST(ElementNotFoundError, TheSearchItselfLeavesEverythingEmpty) {
    const ElementNotFoundError error;
    EXPECT_EQ(error.GetErrorId(), 0);
    EXPECT_TRUE(error.Tag().empty() && error.Attribute().empty() && error.Value().empty());
    EXPECT_FALSE(error.GetFlagA() || error.GetFlagB());
    const ErrorInfo info = error.ToErrorInfo();
    EXPECT_EQ(info.code, kTagCode);
    EXPECT_EQ(info.parameters, L"[\"\"]");
}

TEST(ElementNotFoundError, WithoutAValueOnlyTheTagIsNamed) {
    const ErrorInfo info = ElementNotFoundError(L"ctrl", L"", L"").ToErrorInfo();
    EXPECT_EQ(info.code, kTagCode);
    EXPECT_EQ(info.parameters, L"[\"ctrl\"]");
}

TEST(ElementNotFoundError, WithoutAValueTheAttributeIsLeftOut) {
    const ErrorInfo info = ElementNotFoundError(L"ctrl", L"name", L"").ToErrorInfo();
    EXPECT_EQ(info.code, kTagCode);
    EXPECT_EQ(info.parameters, L"[\"ctrl\"]");
}

TEST(ElementNotFoundError, WithAValueButNoAttributeTagAndValueAreNamed) {
    const ErrorInfo info = ElementNotFoundError(L"ctrl", L"", L"OK").ToErrorInfo();
    EXPECT_EQ(info.code, kValueCode);
    EXPECT_EQ(info.parameters, L"[\"ctrl\",\"OK\"]");
}

TEST(ElementNotFoundError, WithAllTextsAllAreNamed) {
    const ErrorInfo info = ElementNotFoundError(L"ctrl", L"name", L"say \"O\u00e9\"").ToErrorInfo();
    EXPECT_EQ(info.code, kAllCode);
    EXPECT_EQ(info.parameters, L"[\"ctrl\",\"name\",\"say \\\"O\u00e9\\\"\"]");
}

TEST(ElementNotFoundError, ATextThatIsNoUtf16LeavesTheParametersEmptyAndIsLogged) {
    Testing::LogCapture log;
    const ErrorInfo info = ElementNotFoundError(L"ctrl", L"", CString(1, static_cast<wchar_t>(0xD800))).ToErrorInfo();
    EXPECT_EQ(info.code, kValueCode);
    EXPECT_TRUE(info.parameters.empty());
    EXPECT_TRUE(log.Contains("UTF16_UTF8Size(")) << log.Text();
}

TEST(ElementNotFoundError, TextsAndFlagsTravelInOrder) {
    const ElementNotFoundError error(L"t", L"a", L"v", true, false);
    Archive archive;
    error.WriteToArchive(archive);
    EXPECT_EQ(PayloadText(archive), "02 01 00 00 00 74 00 02 01 00 00 00 61 00 02 01 00 00 00 76 00 01 00");
    ElementNotFoundError back;
    Archive reader = Reread(archive);
    back.ReadFromArchive(reader);
    EXPECT_TRUE(back.Equals(error));
}

TEST(ElementNotFoundError, EqualsLooksAtEveryField) {
    const ElementNotFoundError error(L"t", L"a", L"v", true, true);
    EXPECT_TRUE(error.Equals(ElementNotFoundError(L"t", L"a", L"v", true, true)));
    EXPECT_FALSE(error.Equals(ElementNotFoundError(L"x", L"a", L"v", true, true)));
    EXPECT_FALSE(error.Equals(ElementNotFoundError(L"t", L"x", L"v", true, true)));
    EXPECT_FALSE(error.Equals(ElementNotFoundError(L"t", L"a", L"x", true, true)));
    EXPECT_FALSE(error.Equals(ElementNotFoundError(L"t", L"a", L"v", false, true)));
    EXPECT_FALSE(error.Equals(ElementNotFoundError(L"t", L"a", L"v", true, false)));
}

// Another class, with whatever id it is given.
class OtherError final : public ISearchErrorBase {
public:
    explicit OtherError(std::int32_t id) : m_id(id) {}
    std::int32_t GetErrorId() const override { return m_id; }
    void WriteToArchive(Archive&) const override {}
    ErrorInfo ToErrorInfo() const override { return {}; }
    bool GetFlagB() const override { return false; }
    bool Equals(const ISearchErrorBase&) const override { return true; }

private:
    std::int32_t m_id;
};

TEST(ElementNotFoundError, AnotherClassIsNotEqualEvenWithTheSameId) {
    EXPECT_FALSE(ElementNotFoundError().Equals(OtherError(0)));
    EXPECT_FALSE(ElementNotFoundError().Equals(OtherError(1)));
}

TEST(SearchErrorArchive, NoErrorIsOneByte) {
    Archive archive;
    WriteSearchError(archive, nullptr);
    EXPECT_EQ(PayloadText(archive), "00");
    Archive reader = Reread(archive);
    EXPECT_EQ(ReadSearchError(reader), nullptr);
}

TEST(SearchErrorArchive, AnErrorHasAPresentByteAndAnIdButNoSharedPointerTag) {
    Archive archive;
    const ElementNotFoundError error;
    WriteSearchError(archive, &error);
    EXPECT_EQ(PayloadText(archive), "01 01 00 00 00 00 02 00 00 00 00 02 00 00 00 00 02 00 00 00 00 00 00");
    Archive reader = Reread(archive);
    const auto back = ReadSearchError(reader);
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(back->Equals(error));
}

TEST(SearchErrorArchive, AnIdThatNoClassHasIsRefused) {
    Archive reader = ArchiveOf({1, 1, 5, 0, 0, 0});
    EXPECT_EQ(ArchiveProblem([&] { ReadSearchError(reader); }), "Invalid search error id");
}

}  // namespace
}  // namespace Zorvex::Search
