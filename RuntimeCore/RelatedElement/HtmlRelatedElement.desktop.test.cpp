#include "RuntimeCore/RelatedElement/HtmlRelatedElement.h"

#include <gtest/gtest.h>

#include "tests/Support/FakeDocument.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

TEST(HtmlRelatedElement, NoPurposeHasOne) {
    LogCapture log;
    FakeHtmlObject element;
    EXPECT_FALSE(HtmlRelatedElement::Find(&element, static_cast<RelatedElementKind>(1)));
    EXPECT_TRUE(log.Contains("V [Find] Find related element with purpose: 1")) << log.Text();
    EXPECT_TRUE(log.Contains("V [Find] Not implemented for purpose: 1"));
}

TEST(HtmlRelatedElement, NullElementIsAnError) {
    LogCapture log;
    EXPECT_FALSE(HtmlRelatedElement::Find(nullptr, static_cast<RelatedElementKind>(0)));
    EXPECT_TRUE(log.Contains("E [Find] The element is null")) << log.Text();
    EXPECT_FALSE(log.Contains("Not implemented"));
}

}  // namespace
}  // namespace Zorvex::Testing
