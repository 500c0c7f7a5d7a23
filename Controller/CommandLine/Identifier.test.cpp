#include "Controller/CommandLine/Identifier.h"

#include <gtest/gtest.h>

#include "Common/include/UtfConversion.h"

namespace Zorvex::Controller {
namespace {

TEST(Identifier, TextReadsBackAsTheSameIdentifier) {
    for (const AAObjectIdentifier& identifier :
         {AAObjectIdentifier{HandleOf(0x10102), 3, 0, 0, 1000, HandleOf(0x10102)},
          AAObjectIdentifier{HandleOf(0xFFFF0001), 0xFFFFFFFF, -5, 1, 0xFFFFFFFF, nullptr}, AAObjectIdentifier{}}) {
        const std::string text = IdentifierText(identifier);
        EXPECT_EQ(text.find(' '), std::string::npos);
        EXPECT_EQ(ReadIdentifier(WideText(text)), identifier) << text;
    }
    EXPECT_EQ(IdentifierText({HandleOf(0x10102), 3, -1, 0, 1000, HandleOf(0x10104)}), "0x10102:3:-1:0:1000:0x10104");
}

TEST(Identifier, OtherTextsAreNone) {
    for (const wchar_t* text : {L"", L"0x1", L"1:2:3:4:5", L"1:2:3:4:5:6:7", L"1:2:3:4:5:", L":2:3:4:5:6", L"1:2:x:4:5:6", L"1:2:0x:4:5:6",
                                L"1:2:3:4:5:4294967296", L"1:2: 3:4:5:6", L"ctrl[name=x]"})
        EXPECT_EQ(ReadIdentifier(text), std::nullopt);
}

TEST(Identifier, HandlesAreNumbersOfBothKindsThatTheCommandsPrint) {
    EXPECT_EQ(ReadHandle(L"0x10102"), HandleOf(0x10102));
    EXPECT_EQ(ReadHandle(L"65794"), HandleOf(0x10102));
    EXPECT_EQ(ReadHandle(L"0XFFFF0001"), HandleOf(0xFFFF0001));
    for (const wchar_t* text : {L"", L"0x", L"-5", L"12a", L"4294967296", L"0xg", L"0x1:2", L"0x100000000"}) EXPECT_EQ(ReadHandle(text), std::nullopt);
}

}  // namespace
}  // namespace Zorvex::Controller
