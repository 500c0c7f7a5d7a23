// Requests that no honest client sends: every one gives an exception of the archive, no response, or an ordinary
// answer, on a small stack and in bounded memory.
#include <gtest/gtest.h>
#include <pthread.h>

#include <cstring>
#include <functional>
#include <random>

#include "Common/include/ComException.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FilledRequest.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [{"id": "main", "class": "Main", "rectangle": [0, 0, 100, 100], "objects": {"window": {
    "id": "root", "role": "window", "name": "Main", "rectangle": [0, 0, 100, 100], "children": [
      {"id": "ok", "role": "push button", "name": "OK", "rectangle": [0, 0, 50, 50], "children": [
        {"id": "text", "role": "text", "name": "OK", "simple": true, "rectangle": [0, 0, 5, 5]}]}]}}}]})";

// Runs on a thread with a stack of 256 KiB, as a target program may have given its own.
void OnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 * 1024);
    pthread_t thread;
    const auto run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

// Whatever the request, the server ends it in one of the ways that the contract knows.
void Send(const RequestBuffer& request) {
    try {
        CallRaw(request);
    } catch (const ArchiveException&) {
    } catch (const ComException&) {
    }
}

RequestBuffer WithLength(RequestBuffer bytes) {
    if (bytes.size() >= 4) {
        const auto size = static_cast<std::uint32_t>(bytes.size());
        std::memcpy(bytes.data(), &size, 4);
    }
    return bytes;
}

std::vector<RequestBuffer> OneOfEachKind(DesktopFixture& desktop) {
    const AAObjectIdentifier element = AAContainerCache::Instance().RegisterObject(
        {kClientPid, desktop.Window("main")}, AAElement{desktop.Window("main"), desktop.Element("ok"), desktop.Child("ok")});
    RequestContents contents;
    contents.element = element;
    contents.window = desktop.Window("main");
    std::vector<RequestBuffer> requests;
    for (std::uint32_t id = 0; id < kRequestCount; ++id)
        WithRequestType(static_cast<RequestId>(id),
                        [&]<class Request>() { requests.push_back(EncodeRequest(FilledRequest<Request>(contents))); });
    return requests;
}

TEST(HostileRequests, EveryTruncationEndsWell) {
    DesktopFixture desktop(kDesktop);
    CacheCleaner cleaner;
    const auto requests = OneOfEachKind(desktop);
    ASSERT_EQ(requests.size(), kRequestCount);
    OnSmallStack([&] {
        for (const RequestBuffer& request : requests)
            for (std::size_t size = 0; size < request.size(); ++size)
                Send(WithLength(RequestBuffer(request.data(), request.data() + size)));
    });
}

TEST(HostileRequests, EveryBitFlipEndsWell) {
    DesktopFixture desktop(kDesktop);
    CacheCleaner cleaner;
    const auto requests = OneOfEachKind(desktop);
    OnSmallStack([&] {
        for (const RequestBuffer& request : requests)
            for (std::size_t bit = 0; bit < request.size() * 8; ++bit) {
                RequestBuffer flipped = request;
                flipped[bit / 8] = static_cast<std::uint8_t>(flipped[bit / 8] ^ (1u << bit % 8));
                Send(flipped);
            }
    });
}

TEST(HostileRequests, LengthFieldsOfAnySizeCostNoMoreThanTheRequest) {
    DesktopFixture desktop(kDesktop);
    CacheCleaner cleaner;
    const auto requests = OneOfEachKind(desktop);
    for (const RequestBuffer& request : requests)
        for (std::size_t place = 4; place + 4 <= request.size(); ++place)
            for (const std::uint32_t count : {0x7FFFFFFFu, 0xFFFFFFFFu, 0x80000000u, 1000000u}) {
                RequestBuffer changed = request;
                std::memcpy(changed.data() + place, &count, 4);
                Simulated::ResetHeapPeak();
                const std::size_t before = Simulated::OutstandingHeapBytes();
                Send(changed);
                EXPECT_LT(Simulated::PeakHeapBytes() - before, 64 * request.size() + 4096);
            }
}

TEST(HostileRequests, RandomBytesEndWell) {
    DesktopFixture desktop(kDesktop);
    CacheCleaner cleaner;
    std::mt19937 random(20261121);
    OnSmallStack([&] {
        for (int i = 0; i < 20000; ++i) {
            Archive archive;
            archive.write(static_cast<std::uint32_t>(random() % 41));
            const std::size_t count = random() % 64;
            for (std::size_t k = 0; k < count; ++k) archive.write(static_cast<std::uint8_t>(random() % (k % 2 ? 256 : 12)));
            Send(archive.TakeBuffer());
        }
    });
}

}  // namespace
}  // namespace Zorvex::Testing
