#include "Controller/CommandLine/RecordJson.h"

#include <gtest/gtest.h>

#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/Identifier.h"
#include "RuntimeCore/Requests/Catalogue.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex::Controller {
namespace {

const RequestDefaults kDefaults{77, HandleOf(0x10102), 5'000};

bool Same(const RequestBuffer& a, const RequestBuffer& b) {
    return a.size() == b.size() && std::equal(a.data(), a.data() + a.size(), b.data());
}

// Empty if the text is a request.
std::string Mistake(RequestId id, const std::string& json) {
    try {
        EncodeRequestJson(id, json, kDefaults);
    } catch (const CommandFailure& failure) {
        EXPECT_EQ(failure.Code(), ExitCode::WrongArguments);
        return failure.what();
    }
    return {};
}

TEST(RecordJson, FieldsOfEveryKindAreThoseOfTheRecord) {
    FindElemFromPointRequest point;
    point.clientPid = 5;
    point.window = HandleOf(0x20102);
    point.point = {-3, 4};
    point.flags = 11;
    point.relatedElement = RelatedElementKind::ClosestComboBox;
    EXPECT_TRUE(Same(EncodeRequest(point), EncodeRequestJson(RequestId::FindElemFromPoint,
        R"({"clientPid": 5, "window": "0x20102", "point": {"x": -3, "y": 4}, "flags": "0xb", "relatedElement": 3})", kDefaults)));

    ScrapeRequest scrape;
    scrape.window = HandleOf(0x10102);
    scrape.rectangle = {1, 2, 3, 4};
    EXPECT_TRUE(Same(EncodeRequest(scrape), EncodeRequestJson(RequestId::Scrape,
        R"({"rectangle": {"left": 1, "top": 2, "right": 3, "bottom": 4}})", kDefaults)));

    SetSelectedItemsRequest items;
    items.element = {HandleOf(0x10102), 3, 4, 0, 5, HandleOf(0x10102)};
    items.items = {L"a", L"\u00e9"};
    items.clearFirst = true;
    EXPECT_TRUE(Same(EncodeRequest(items), EncodeRequestJson(RequestId::SetSelectedItems,
        "{\"element\": \"0x10102:3:4:0:5:0x10102\", \"items\": [\"a\", \"\xC3\xA9\"], \"clearFirst\": true}", kDefaults)));

    GetElementIndexRequest index;
    index.ancestor.containerId = 9;
    index.attributes = {{L"name", L"x"}};
    EXPECT_TRUE(Same(EncodeRequest(index), EncodeRequestJson(RequestId::GetElementIndex,
        R"({"ancestor": {"containerId": 9}, "attributes": {"name": "x"}})", kDefaults)));

    GetWndsByAaNameRequest names;
    names.accessibleName = std::make_shared<StringValue>(L"a.*", MatchingTypeRegex, 0.5, true, false);
    EXPECT_TRUE(Same(EncodeRequest(names), EncodeRequestJson(RequestId::GetWndsByAaName,
        R"({"accessibleName": {"value": "a.*", "matching": "regex", "level": 0.5, "caseSensitive": false}, "windowClass": null})", kDefaults)));
}

TEST(RecordJson, SelectorAsTextAndAsObjectIsTheSameRequest) {
    const RequestBuffer text = EncodeRequestJson(RequestId::FindSelectors, R"({"selectors": ["ctrl[name~\"x\":0.8 !role=link idx=2]"]})", kDefaults);
    const RequestBuffer object = EncodeRequestJson(RequestId::FindSelectors, R"({"selectors": [{"tags": [{"kind": "ctrl", "attributes": {
        "name": {"value": "x", "matching": "fuzzy", "level": 0.8}, "role": {"value": "link", "enabled": false}, "idx": 2}}]}]})", kDefaults);
    EXPECT_TRUE(Same(text, object));

    FindSelectorsRequest request;
    request.root = {HandleOf(0x10102), 0, CHILDID_SELF, 0, 77, HandleOf(0x10102)};
    request.timeoutMilliseconds = 5'000;
    request.selectors.resize(1);
    auto tag = std::make_shared<AaTag>();
    tag->SetLimitsEveryLevel(true);
    request.selectors[0].tags = {tag, nullptr};
    request.selectors[0].options.scope = Search::SearchScope::ChildrenOnly;
    request.selectors[0].options.optionF = -7;
    request.selectors[0].inheritedScore = {0.5, 2, 0.75, 0.25, 1.0};
    request.selectors[0].pendingAttributeCount = 3;
    EXPECT_TRUE(Same(EncodeRequest(request), EncodeRequestJson(RequestId::FindSelectors, R"({"selectors": [{
        "tags": [{"kind": "ctrl", "limitsEveryLevel": true}, null], "options": {"scope": 0, "optionF": -7},
        "inheritedScore": {"mean": 0.5, "count": 2, "max": 0.75, "min": 0.25, "sum": 1.0}, "pendingAttributeCount": 3}]})", kDefaults)));
}

TEST(RecordJson, MistakesNameTheirPlace) {
    EXPECT_EQ(Mistake(RequestId::AaNameFromWindow, "[]"), "the request: an object is expected");
    EXPECT_EQ(Mistake(RequestId::AaNameFromWindow, R"({"window": true})"), "window: a number is expected");
    EXPECT_EQ(Mistake(RequestId::AaNameFromWindow, R"({"window": "0x"})"), "window: a number is expected");
    EXPECT_EQ(Mistake(RequestId::AaNameFromWindow, R"({"window": 4294967296})"), "window: the number is too large");
    EXPECT_EQ(Mistake(RequestId::FindElemFromPoint, R"({"point": {"z": 1}})"), "point.z: there is no such field");
    EXPECT_EQ(Mistake(RequestId::FindElemFromPoint, R"({"clientPid": -1})"), "clientPid: the number is too small");
    EXPECT_EQ(Mistake(RequestId::AreEqual, R"({"first": "x"})"), "first: this is no identifier such as 0x10102:3:0:0:1:0x10102");
    EXPECT_EQ(Mistake(RequestId::WriteText, R"({"text": 1})"), "text: a text is expected");
    EXPECT_EQ(Mistake(RequestId::SetIsChecked, R"({"wantedState": 1})"), "wantedState: true or false is expected");
    EXPECT_EQ(Mistake(RequestId::SetSelectedItems, R"({"items": ["a", 2]})"), "items[1]: a text is expected");
    EXPECT_EQ(Mistake(RequestId::FindSelectors, R"({"selectors": [{"tags": [{}]}]})"), "selectors[0].tags[0]: \"kind\" is missing, such as \"ctrl\"");
    EXPECT_EQ(Mistake(RequestId::FindSelectors, R"({"selectors": [{"tags": [{"kind": "ctrl", "attributes": {"nmae": "x"}}]}]})"),
              "selectors[0].tags[0].attributes.nmae: the tag has no such attribute, or it takes another kind of value");
    EXPECT_NE(Mistake(RequestId::FindSelectors, R"({"selectors": [{"option": {}}]})").find("selectors[0].option: there is no such field"), std::string::npos);
    EXPECT_NE(Mistake(RequestId::FindSelectors, R"({"selectors": [{"tags": ["ctrl ctrl"]}]})").find("one tag is expected"), std::string::npos);
    EXPECT_NE(Mistake(RequestId::Scrape, "{").find("this is no JSON"), std::string::npos);
    EXPECT_NE(Mistake(RequestId::Scrape, std::string(100'000, '[')), "");
}

TEST(RecordJson, EveryRequestRefusesAFieldThatItDoesntHave) {
    for (std::uint32_t number = 0; number < kRequestCount; ++number)
        EXPECT_NE(Mistake(static_cast<RequestId>(number), R"({"noSuchField": 1})").find("noSuchField: there is no such field"), std::string::npos);
}

TEST(RecordJson, AnswersThatDontReadAreTold) {
    RequestBuffer bytes;
    const std::uint8_t rubbish[] = {1, 2, 3};
    bytes.append(rubbish, sizeof(rubbish));
    for (std::uint32_t number = 0; number < kRequestCount; ++number) {
        if (static_cast<RequestId>(number) == RequestId::UnregisterAllContainersByClientPid) continue;
        try {
            DecodeResponseJson(static_cast<RequestId>(number), bytes);
            ADD_FAILURE() << number;
        } catch (const CommandFailure& failure) {
            EXPECT_EQ(failure.Code(), ExitCode::TargetProblem);
        }
    }
}

TEST(RecordJson, EveryResponseIsWrittenWithItsFields) {
    for (std::uint32_t number = 0; number < kRequestCount; ++number) {
        const RequestId id = static_cast<RequestId>(number);
        WithRequestType(id, [&]<class Request>() {
            using Response = typename Request::Response;
            if constexpr (!std::is_same_v<Response, NoResponse>) {
                Archive archive;
                writeField(archive, Response{});
                const std::string json = DecodeResponseJson(id, archive.TakeBuffer());
                Response response;
                Response::Fields(response, [&](const char* name, auto&) {
                    EXPECT_NE(json.find("\"" + std::string(name) + "\""), std::string::npos) << RequestName(id) << ' ' << name;
                });
            }
        });
    }
}

TEST(RecordJson, VariantsOfEveryKindAreWritten) {
    const auto written = [](CComVariant value) {
        Archive archive;
        writeField(archive, AttributeResponse{S_OK, std::move(value)});
        const std::string json = DecodeResponseJson(RequestId::GetElemAttr, archive.TakeBuffer());
        const std::size_t start = json.find("\"value\": ") + 9;
        return json.substr(start, json.rfind('\n') - start);
    };
    EXPECT_EQ(written(CComVariant()), "null");
    EXPECT_EQ(written(CComVariant(L"x")), "\"x\"");
    EXPECT_EQ(written(CComVariant(LONG{-5})), "-5");
    EXPECT_EQ(written(CComVariant(true)), "true");
    const auto array = [](VARTYPE type, const void* element) {
        CComVariant value;
        value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
        value.parray = ::SafeArrayCreateVector(type, 0, 1);
        LONG first = 0;
        EXPECT_EQ(::SafeArrayPutElement(value.parray, &first, const_cast<void*>(element)), S_OK);
        return value;
    };
    const LONG number = 7;
    const CComBSTR text(L"x");
    EXPECT_EQ(written(array(VT_I4, &number)), "[\n  7\n ]");
    EXPECT_EQ(written(array(VT_BSTR, static_cast<BSTR>(text))), "[\n  \"x\"\n ]");
    // No list that would look empty. It travels only as long as its elements are said to be VT_I4.
    CComVariant unnamed = array(VT_I4, &number);
    unnamed.vt = VT_ARRAY | VT_UI4;
    EXPECT_EQ(written(unnamed), "{\n  \"type\": " + std::to_string(VT_ARRAY | VT_UI4) + "\n }");
}

}  // namespace
}  // namespace Zorvex::Controller
