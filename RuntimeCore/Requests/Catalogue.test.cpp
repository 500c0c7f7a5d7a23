#include "RuntimeCore/Requests/Catalogue.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/Support/ArchiveBytes.h"
#include "tests/Support/RandomRecords.h"

namespace Zorvex {
namespace {

using Testing::ArchiveProblem;
using Testing::PayloadText;
using Testing::RandomRecords;
using Testing::Truncated;

// The forms of a record's fields, as the catalogue abbreviates them.
class Signature {
public:
    template <class T>
    void Add(const T&) {
        if constexpr (std::is_same_v<T, AAObjectIdentifier>) Append("id");
        else if constexpr (std::is_same_v<T, HighlightInfo>) Append("HighlightInfo");
        else if constexpr (std::is_same_v<T, AncestryNode>) Append("AncestryNode");
        else if constexpr (FieldRecord<T>) {
            T record;
            T::Fields(record, [this](const char*, auto& field) { this->Add(field); });
        } else if constexpr (std::is_same_v<T, HWND>) Append("wnd");
        else if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, std::uint8_t>) Append("byte");
        else if constexpr (std::is_same_v<T, CString>) Append("str");
        else if constexpr (std::is_same_v<T, CComVariant>) Append("var");
        else if constexpr (std::is_same_v<T, RECT>) Append("i32 i32 i32 i32");
        else if constexpr (std::is_same_v<T, POINT>) Append("i32 i32");
        else if constexpr (std::is_same_v<T, std::shared_ptr<StringValue>>) Append("sp<StringValue>");
        else if constexpr (std::is_same_v<T, Search::SelectorEntry>) Append("SelectorEntry");
        else if constexpr (std::is_same_v<T, Search::CrossProcessSelectorResult>) Append("SelectorResult");
        else if constexpr (std::is_enum_v<T> || sizeof(T) == 4) Append("i32");
        else Append("i64");
    }
    template <class T>
    void Add(const std::vector<T>&) { Append("vec<" + Of<T>() + ">"); }
    template <class Key, class Value>
    void Add(const std::map<Key, Value>&) { Append("map<" + Of<Key>() + "," + Of<Value>() + ">"); }

    template <class T>
    static std::string Of() {
        Signature signature;
        signature.Add(T{});
        return signature.m_text;
    }

private:
    void Append(const std::string& form) { m_text += (m_text.empty() ? "" : " ") + form; }
    std::string m_text;
};

TEST(Catalogue, FieldsOfEveryRequestAndResponseAreThoseOfTheContract) {
    const struct { const char* request; const char* response; } expected[kRequestCount] = {
        {"wnd i32 i32 i32 i32 i32 i32", "byte str vec<HighlightInfo>"},
        {"i32 wnd i32 i32 i32 i32", "byte id var wnd i32 i32 i32 i32"},
        {"id i32", "byte str vec<HighlightInfo>"},
        {"id", "i32 vec<str> i32"},
        {"id", "byte"},
        {"id id", "byte"},
        {"id str", "i32 var"},
        {"id i32", "id"},
        {"wnd sp<StringValue> sp<StringValue>", "byte vec<wnd>"},
        {"id byte byte i32 str str i32 i32 str i32", "byte str i32"},
        {"i32 wnd", "id"},
        {"id vec<str> byte byte byte byte byte", "i32"},
        {"id", "i32 vec<str>"},
        {"id", "i32"},
        {"wnd", "byte"},
        {"id id i32 i32 str", "i32 vec<AncestryNode> wnd"},
        {"id vec<str>", "byte map<str,str>"},
        {"wnd", "byte i32 i32 i32 i32"},
        {"vec<id> str", "vec<var>"},
        {"vec<id> i32", "vec<str>"},
        {"id vec<SelectorEntry> i32 i64", "byte vec<SelectorResult> i64"},
        {"wnd i32 i32", "byte str"},
        {"wnd", "byte str"},
        {"id i32", "i32 id wnd i32"},
        {"wnd i32", "byte"},
        {"id str", "byte"},
        {"i32 wnd", "id"},
        {"i32 wnd i32 i32", "id"},
        {"id", "byte byte"},
        {"id byte", "i32"},
        {"id byte", "i32"},
        {"wnd id id map<str,str>", "i32"},
        {"id", "byte"},
        {"id", "byte"},
        {"id", "i32"},
        {"id", "i32"},
        {"id str", "i32 var"},
        {"i32 wnd", ""},
        {"i32 wnd", "byte"},
        {"vec<wnd>", "map<wnd,i32>"},
    };
    for (std::uint32_t id = 0; id < kRequestCount; ++id) {
        EXPECT_TRUE(WithRequestType(static_cast<RequestId>(id), [&]<class Request>() {
            EXPECT_EQ(Signature::Of<Request>(), expected[id].request) << ToText(Request::kRequestId);
            EXPECT_EQ(Signature::Of<typename Request::Response>(), expected[id].response) << ToText(Request::kRequestId);
        }));
    }
    EXPECT_FALSE(WithRequestType(static_cast<RequestId>(40), []<class Request>() { FAIL(); }));
}

TEST(Catalogue, AncestryNodeHasItsSevenFields) {
    std::string names;
    AncestryNode node;
    AncestryNode::Fields(node, [&](const char* name, auto&) { names += std::string(name) + " "; });
    EXPECT_EQ(names, "node included selectorIndex minimalAttributes allAttributes siblings indexInSiblings ");
}

// Calls `check` with an encoded record of random contents and a function that decodes and encodes it again.
template <class Check>
void ForEveryRecord(unsigned rounds, Check&& check) {
    for (unsigned round = 0; round < rounds; ++round) {
        for (std::uint32_t id = 0; id < kRequestCount; ++id) {
            WithRequestType(static_cast<RequestId>(id), [&]<class Request>() {
                const auto run = [&]<class Record>(const char* side, Record record) {
                    RandomRecords(round * 100 + id).Fill(record);
                    Archive archive;
                    WriteRecord(archive, record);
                    SCOPED_TRACE(std::string(ToText(Request::kRequestId)) + side);
                    check(archive.TakeBuffer(), [](const RequestBuffer& bytes) {
                        Archive reader(bytes);
                        const Record back = ReadRecord<Record>(reader);
                        Archive again;
                        WriteRecord(again, back);
                        return std::pair(again.TakeBuffer(), reader.remaining());
                    });
                };
                run(" request", Request());
                run(" response", typename Request::Response());
            });
        }
    }
}

TEST(Catalogue, EveryRecordRoundTripsWithRandomContents) {
    ForEveryRecord(40, [](const RequestBuffer& bytes, auto&& reencode) {
        const auto [again, remaining] = reencode(bytes);
        EXPECT_EQ(PayloadText(again), PayloadText(bytes));
        EXPECT_EQ(remaining, 0u);
    });
}

TEST(Catalogue, EveryTruncationOfEveryRecordFailsAsAnArchive) {
    ForEveryRecord(2, [](const RequestBuffer& bytes, auto&& reencode) {
        for (std::size_t size = 4; size < bytes.size(); ++size)
            EXPECT_NE(ArchiveProblem([&] { reencode(Truncated(bytes, size)); }), "(no exception)") << size;
    });
}

TEST(Catalogue, EveryBitFlipOfEveryRecordIsReadOrFailsAsAnArchive) {
    ForEveryRecord(1, [](const RequestBuffer& bytes, auto&& reencode) {
        for (std::size_t bit = 4 * 8; bit < 8 * bytes.size(); ++bit) {
            RequestBuffer flipped(bytes);
            flipped[bit / 8] = static_cast<std::uint8_t>(flipped[bit / 8] ^ (1u << bit % 8));
            try {
                reencode(flipped);
            } catch (const ArchiveException&) {
            } catch (const ComException& exception) {
                // Only an array that says it holds VT_UI4, VT_INT or VT_UINT: it is read and can't be written.
                EXPECT_EQ(exception.Error(), E_INVALIDARG);
            }
        }
    });
}

TEST(Catalogue, LengthFieldsOfAnySizeAreReadOrFailAsAnArchive) {
    ForEveryRecord(1, [](const RequestBuffer& bytes, auto&& reencode) {
        for (std::size_t at = 4; at + 4 <= bytes.size(); ++at) {
            for (const std::uint32_t length : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu, 0x10000000u}) {
                RequestBuffer changed(bytes);
                std::memcpy(changed.data() + at, &length, sizeof length);
                try {
                    reencode(changed);
                } catch (const ArchiveException&) {
                } catch (const ComException&) {
                }
            }
        }
    });
}

TEST(Catalogue, BytesBehindTheLastFieldAreLeftAlone) {
    Archive archive;
    WriteRecord(archive, GetSiblingRequest{{}, 3});
    archive.write(L"more");
    Archive reader(archive.buffer());
    EXPECT_EQ(ReadRecord<GetSiblingRequest>(reader).offset, 3);
    EXPECT_GT(reader.remaining(), 0u);
}

TEST(Catalogue, SelectionThatStopsAfterTheItemsFails) {
    Archive request;
    writeField(request, AAObjectIdentifier());
    writeField(request, std::vector<CString>{L"one"});
    EXPECT_EQ(ArchiveProblem([&] {
                  Archive reader(request.buffer());
                  ReadRecord<SetSelectedItemsRequest>(reader);
              }),
              "readBytes: out-of-bounds access");
}

TEST(Catalogue, WindowClassMayBeAbsent) {
    GetWndsByAaNameRequest request;
    request.accessibleName = std::make_shared<StringValue>(L"x");
    const auto back = [&] {
        Archive reader(EncodeRequest(request));
        std::uint32_t id = 0;
        reader.read(id);
        return ReadRecord<GetWndsByAaNameRequest>(reader);
    }();
    EXPECT_EQ(back.windowClass, nullptr);
    ASSERT_NE(back.accessibleName, nullptr);
    EXPECT_EQ(back.accessibleName->GetValue(), L"x");
}

TEST(Catalogue, EmptyVectorsAndMapsTravel) {
    EXPECT_EQ(PayloadText(EncodeRequest(GetAttrForElementsRequest{{}, L"name"})),
              "01 12 00 00 00 03 00 00 00 00 02 04 00 00 00 6e 00 61 00 6d 00 65 00");
    EXPECT_EQ(PayloadText(EncodeRequest(ExtractWindowIdFromBrowserMarkerTabRequest{})), "01 27 00 00 00 03 00 00 00 00");
    Archive response;
    WriteRecord(response, ExtractWindowIdFromBrowserMarkerTabResponse{});
    EXPECT_EQ(PayloadText(response), "04 00 00 00 00");
}

TEST(Catalogue, FailedPointSearchIsAllZerosWithAnEmptyVariant) {
    Archive response;
    WriteRecord(response, FindElemFromPointResponse{});
    const std::string zero = " 01 00 00 00 00";
    std::string expected = "00";
    for (int i = 0; i < 6; ++i) expected += zero;
    expected += " 08 00 00";
    for (int i = 0; i < 5; ++i) expected += zero;
    EXPECT_EQ(PayloadText(response), expected);
}

TEST(Catalogue, DefaultsOfTheTableRequestAreThoseBeforeReading) {
    const ExtractTableRequest request;
    EXPECT_EQ(request.columnNamesFromHeader, 1);
    EXPECT_EQ(request.cleanup, 0);
    EXPECT_EQ(request.reserved1, -1);
    EXPECT_EQ(request.reserved3, -1);
}

TEST(RequestId, TextsAreTheirNamesAndEmptyForOthers) {
    EXPECT_STREQ(ToText(RequestId::Scrape), "RequestId::Scrape");
    EXPECT_STREQ(ToText(RequestId::ExtractWindowIdFromBrowserMarkerTab), "RequestId::ExtractWindowIdFromBrowserMarkerTab");
    EXPECT_STREQ(ToText(static_cast<RequestId>(40)), "");
    EXPECT_STREQ(ToText(static_cast<RequestId>(0xFFFFFFFF)), "");
    for (std::uint32_t id = 0; id < kRequestCount; ++id)
        EXPECT_EQ(std::string(ToText(static_cast<RequestId>(id))).rfind("RequestId::", 0), 0u) << id;
}

TEST(AaCrossProcessSearchResult, IsSelfByItsIdentifierAndInvalidWithoutAWindow) {
    Search::AaCrossProcessSearchResult result;
    EXPECT_TRUE(result.IsSelf());
    result.identifier.childId = 2;
    EXPECT_FALSE(result.IsSelf());
    result.identifier.containerId = 1;
    EXPECT_FALSE(result.IsValid());
    EXPECT_TRUE(result.IsVisible());
}

}  // namespace
}  // namespace Zorvex
