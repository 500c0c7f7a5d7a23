// The text of real pages, held against what a person sees in them. The desktops are recorded ones, made by
// tools/convert_web_tree.py; VANTREL_REWRITE_EXPECTED writes the expected files anew.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Common/include/UtfConversion.h"
#include "RuntimeCore/TextCapture/HtmlText.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

void CompareWithFile(const std::string& name, const CString& text) {
    std::string lines;
    ASSERT_TRUE(Utf16ToUtf8(text + L'\n', lines));
    std::erase(lines, '\r');
    const std::filesystem::path path = std::filesystem::path(VANTREL_SOURCE_DIR) / "tests/expected/web" / (name + ".txt");
    if (std::getenv("VANTREL_REWRITE_EXPECTED")) std::ofstream(path, std::ios::binary) << lines;
    std::ifstream file(path, std::ios::binary);
    ASSERT_TRUE(file) << path;
    EXPECT_EQ(lines, std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()));
}

class WebPages : public testing::TestWithParam<const char*> {
protected:
    CString Page(bool ignoreOffscreen = false, const RECT* filter = nullptr) {
        CString text;
        EXPECT_EQ(IA2Tools::GetHtmlTextContent(desktop.Element("document"), true, ignoreOffscreen, filter, text), S_OK);
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
        return text;
    }

    LogCapture quiet{L"FATAL"};
    DesktopFixture desktop{DesktopFixture::ShippedFile(std::string("web/") + GetParam() + ".json")};
};

TEST_P(WebPages, ThePageReadsAsAPersonSeesIt) { CompareWithFile(GetParam(), Page()); }

TEST_P(WebPages, TheWindowReadsAsItsFrameAndThePage) {
    CaptureContext context;
    context.m_bIgnoreHidden = true;
    CString text;
    EXPECT_EQ(CaptureTextAA_IA2Html(context, desktop.Window("browser"), nullptr, text, false), S_OK);
    CompareWithFile(std::string(GetParam()) + "_window", text);
    EXPECT_NE(text.find(Page()), CString::npos);
    const RECT all{-20000, -20000, 20000, 20000};
    CString filtered;
    EXPECT_EQ(CaptureTextAA_IA2Html(context, desktop.Window("browser"), &all, filtered, false), S_OK);
    EXPECT_EQ(filtered, text);
}

TEST_P(WebPages, AFilterOverAllChangesNothingAndOneOverNothingGivesNothing) {
    const RECT all{-20000, 0, 20000, 20000}, nothing{20000, 20000, 20001, 20001};
    EXPECT_EQ(Page(false, &all), Page());
    EXPECT_EQ(Page(false, &nothing), L"");
}

INSTANTIATE_TEST_SUITE_P(Recorded, WebPages, testing::Values("article", "form", "table"), [](const auto& info) { return info.param; });

class ArticlePage : public WebPages {};

TEST_P(ArticlePage, EveryWordThatAPersonSeesIsRead) {
    for (const wchar_t* seen : {L"Home", L"12%", L"third quarter", L"fell", L"inline link that itself wraps",
                                L"South-East", L"line two", L"Figure 1", L"three"})
        EXPECT_NE(Page().find(seen), CString::npos) << CString(seen);
}

TEST_P(ArticlePage, WhatIsHiddenInThePageIsNotRead) {
    for (const wchar_t* unseen : {L"hidden text", L"aria hidden"}) EXPECT_EQ(Page().find(unseen), CString::npos);
}

TEST_P(ArticlePage, WhatIsOffscreenIsReadUnlessItIsLeftOut) {
    EXPECT_NE(Page().find(L"offscreen text"), CString::npos);
    EXPECT_EQ(Page(true).find(L"offscreen text"), CString::npos);
}

TEST_P(ArticlePage, AFilterGivesTheLinesInIt) {
    const RECT headings{0, 380, 1099, 436};
    EXPECT_EQ(Page(false, &headings).find(L"Quarterly"), CString::npos);
    EXPECT_NE(Page(false, &headings).find(L"Regions"), CString::npos);
}

INSTANTIATE_TEST_SUITE_P(Recorded, ArticlePage, testing::Values("article"), [](const auto& info) { return info.param; });

}  // namespace
}  // namespace Zorvex
