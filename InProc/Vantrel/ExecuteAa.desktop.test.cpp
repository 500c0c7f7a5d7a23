#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <thread>

#include "Common/include/ComException.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr char kOneWindow[] = R"({"windows": [{"id": "main", "class": "Main", "rectangle": [0, 0, 100, 100],
    "objects": {"window": {"id": "root", "role": "window", "name": "Main", "rectangle": [0, 0, 100, 100], "children": []}}}]})";

RequestBuffer RequestOfNumber(std::uint32_t number) {
    Archive archive;
    archive.write(number);
    return archive.TakeBuffer();
}

std::string TextOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const ArchiveException& exception) {
        return exception.Text();
    }
    return "no ArchiveException";
}

TEST(ExecuteAa, RequestOfTheHeaderAloneFailsOnTheNumberThroughTheExport) {
    EXPECT_EQ(TextOf([] { CallRaw(RequestBuffer{4, 0, 0, 0}); }), "readBytes: out-of-bounds access");
}

TEST(ExecuteAa, BufferThatIsNoArchiveFailsThroughTheExport) {
    EXPECT_EQ(TextOf([] { CallRaw(RequestBuffer{}); }), "Invalid vBuffer in ctor");
    EXPECT_EQ(TextOf([] { CallRaw(RequestBuffer{4, 0, 0}); }), "Invalid vBuffer in ctor");
    EXPECT_EQ(TextOf([] { CallRaw(RequestBuffer{5, 0, 0, 0}); }), "Invalid vBuffer in ctor");
}

TEST(ExecuteAa, NumberOfTheWrongTagFailsThroughTheExport) {
    EXPECT_EQ(TextOf([] { CallRaw(RequestBuffer{9, 0, 0, 0, 2, 1, 0, 0, 0}); }), "Invalid type, number expected.");
}

TEST(ExecuteAa, UnknownRequestLeavesTheCallersBufferAsItIsWithoutALine) {
    for (const std::uint32_t number : {40u, 41u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        LogCapture log;
        RequestBuffer response{1, 2, 3};
        const RequestBuffer request = RequestOfNumber(number);
        ExecuteAa(&request, &response);
        EXPECT_EQ(response, (RequestBuffer{1, 2, 3}));
        EXPECT_EQ(log.Lines().back(), "V [Dispatch] reqType = ");
    }
}

TEST(ExecuteAa, ResponseReplacesTheCallersBlockAndFreesIt) {
    DesktopFixture desktop(kOneWindow);
    const int before = Simulated::OutstandingBlocks(Simulated::Allocation::Heap);
    {
        AaNameFromWindowRequest request;
        request.window = desktop.Window("main");
        const RequestBuffer bytes = EncodeRequest(request);
        RequestBuffer response{1, 2, 3};
        ExecuteAa(&bytes, &response);
        EXPECT_EQ(DecodeResponse<NameResponse>(response).name, L"Main");
    }
    EXPECT_EQ(Simulated::OutstandingBlocks(Simulated::Allocation::Heap), before);
}

TEST(ExecuteAa, UnregisteringLeavesTheBufferUnchanged) {
    RequestBuffer response{7};
    const RequestBuffer request = EncodeRequest(UnregisterAllContainersByClientPidRequest{});
    ExecuteAa(&request, &response);
    EXPECT_EQ(response, RequestBuffer{7});
}

TEST(ExecuteAa, TruncatedBodyGivesNoResponseAndOneErrorLine) {
    LogCapture log;
    EXPECT_TRUE(CallRaw(RequestOfNumber(static_cast<std::uint32_t>(RequestId::AreEqual))).empty());
    std::size_t errors = 0;
    for (const std::string& line : log.Lines())
        if (line[0] == 'E') {
            ++errors;
            EXPECT_EQ(line.find("E [Dispatch] Failed to dispatch request: "), 0u) << line;
        }
    EXPECT_EQ(errors, 1u);
}

TEST(ExecuteAa, BytesBehindTheLastFieldAreIgnored) {
    Archive archive;
    archive.write(static_cast<std::uint32_t>(RequestId::IsValidIdentifier));
    WriteRecord(archive, IsValidIdentifierRequest{});
    archive.write(L"more");
    EXPECT_FALSE(CallRaw(archive.TakeBuffer()).empty());
}

TEST(ExecuteAa, ResponseStartsInABlockOf68Bytes) {
    EXPECT_EQ(CallRaw(EncodeRequest(IsValidIdentifierRequest{})).capacity(), 68u);
}

TEST(ExecuteAa, AnyOtherExceptionLeavesThroughTheExportAndTheBufferStays) {
    DesktopFixture desktop(kOneWindow);
    desktop.AddFault("root", {.call = "get_accName", .raise = true});
    AaNameFromWindowRequest request;
    request.window = desktop.Window("main");
    const RequestBuffer bytes = EncodeRequest(request);
    RequestBuffer response{1, 2, 3};
    EXPECT_THROW(ExecuteAa(&bytes, &response), Simulated::ServerFailure);
    EXPECT_EQ(response, (RequestBuffer{1, 2, 3}));
}

TEST(ExecuteAa, WantOfMemoryLeavesThroughTheExport) {
    DesktopFixture desktop(kOneWindow);
    const RequestBuffer bytes = EncodeRequest(IsValidIdentifierRequest{});
    RequestBuffer response;
    // The copy of the request, then the block of the response.
    for (const unsigned nth : {1u, 2u}) {
        Simulated::FailAllocation(Simulated::Allocation::Heap, nth);
        EXPECT_THROW(ExecuteAa(&bytes, &response), std::bad_alloc) << nth;
    }
    Simulated::FailAllocation(Simulated::Allocation::Heap, 0);
    EXPECT_TRUE(response.empty());
}

TEST(ExecuteAa, ComIsInitialisedOnceInTheProcess) {
    const auto ask = [] { CallRaw(EncodeRequest(IsValidIdentifierRequest{})); };
    ask();  // whichever test came first: from here on it is done
    const std::size_t before = Simulated::CoInitializeCalls().size();
    std::thread(ask).join();
    ask();
    EXPECT_EQ(Simulated::CoInitializeCalls().size(), before);
}

TEST(ExecuteAa, TheRequestIsNamedInTheLog) {
    LogCapture log;
    CallRaw(EncodeRequest(IsValidIdentifierRequest{}));
    EXPECT_TRUE(log.Contains("reqType = RequestId::IsValidIdentifier"));
}

TEST(ExecuteAa, RoleThatCannotBeEncodedGivesNoResponse) {
    DesktopFixture desktop(R"({"windows": [{"id": "main", "class": "Main", "rectangle": [0, 0, 100, 100],
        "objects": {"window": {"id": "root", "role": "window", "rectangle": [0, 0, 100, 100], "children": [],
                               "faults": [{"call": "get_accRole", "type": "VT_DISPATCH"}]}}}]})");
    CacheCleaner cleaner;
    LogCapture log;
    FindElemFromPointRequest request;
    request.clientPid = kClientPid;
    request.window = desktop.Window("main");
    request.point = {5, 5};
    request.flags = FromPointHitTest;
    EXPECT_FALSE(TryCall(request).has_value());
    EXPECT_TRUE(log.Contains("Failed to dispatch request: write: could not write variant type: 9"));
}

}  // namespace
}  // namespace Zorvex::Testing
