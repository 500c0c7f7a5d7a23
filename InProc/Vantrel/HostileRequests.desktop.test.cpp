// Requests that no honest client sends: every one gives an exception of the archive, no response, or an ordinary
// answer, on a small stack and in bounded memory.
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cstring>
#include <functional>
#include <random>

#include "Common/include/ComException.h"
#include "Common/include/UtfConversion.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FilledRequest.h"
#include "tests/Support/LogCapture.h"

// Of the address sanitizer; null in builds without it.
extern "C" {
__attribute__((weak)) int __sanitizer_install_malloc_and_free_hooks(void (*taken)(const volatile void*, std::size_t),
                                                                     void (*given)(const volatile void*));
__attribute__((weak)) std::size_t __sanitizer_get_allocated_size(const volatile void* block);
}

namespace Zorvex::Testing {
namespace {

// Bytes of every sort of memory, not of the process heap alone.
std::atomic<std::int64_t> g_bytes{0};
std::atomic<std::int64_t> g_peakBytes{0};

void CountTaken(const volatile void*, std::size_t size) {
    const std::int64_t now = g_bytes += static_cast<std::int64_t>(size);
    std::int64_t peak = g_peakBytes;
    while (now > peak && !g_peakBytes.compare_exchange_weak(peak, now)) {
    }
}

void CountGiven(const volatile void* block) { g_bytes -= static_cast<std::int64_t>(__sanitizer_get_allocated_size(block)); }

// The most that `work` held at a time; without the sanitizer, of the process heap alone.
std::int64_t PeakOf(const std::function<void()>& work) {
    static const bool counts = __sanitizer_install_malloc_and_free_hooks &&
                               __sanitizer_install_malloc_and_free_hooks(&CountTaken, &CountGiven) != 0;
    Simulated::ResetHeapPeak();
    const std::size_t heapBefore = Simulated::OutstandingHeapBytes();
    const std::int64_t before = g_bytes;
    g_peakBytes = before;
    work();
    return counts ? g_peakBytes - before : static_cast<std::int64_t>(Simulated::PeakHeapBytes() - heapBefore);
}

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

TEST(HostileRequests, PolicyOfTheDeepestConditionsIsReadOnASmallStack) {
    DesktopFixture desktop(kDesktop);
    CacheCleaner cleaner;
    GetAncestryInfoRequest request;
    request.target = AAContainerCache::Instance().RegisterObject(
        {kClientPid, desktop.Window("main")}, AAElement{desktop.Window("main"), desktop.Element("ok"), desktop.Child("ok")});
    for (const char* innermost : {R"("isLeafNode")", R"("isNoCondition")"})
        // The last of them nest deeper than JSON may.
        for (const int depth : {1, 150, 194, 195, 196, 200}) {
            std::string policy = R"({"tag_rules": {"ctrl": [{"actions": ["include_in_hierarchy"], "condition": )";
            policy += std::string(static_cast<std::size_t>(depth), '[') + innermost;
            for (int i = 0; i < depth; ++i) policy += R"(, "and", "isLeafNode"])";
            request.options.policy = WideText(policy + "}]}}");
            HRESULT result = E_FAIL;
            LogCapture log;
            OnSmallStack([&] { result = Call(request).result; });
            EXPECT_EQ(result, S_OK);
            EXPECT_EQ(log.Contains("error 1"), depth > 195) << depth;
            EXPECT_EQ(log.Contains("error 2"), depth <= 195 && innermost == std::string_view(R"("isNoCondition")")) << depth;
        }
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
    // What the first request of a kind makes once for the process, tables and names, isn't its own.
    for (const RequestBuffer& request : requests) Send(request);
    for (const RequestBuffer& request : requests)
        for (std::size_t place = 4; place + 4 <= request.size(); ++place)
            for (const std::uint32_t count : {0x7FFFFFFFu, 0xFFFFFFFFu, 0x80000000u, 1000000u}) {
                RequestBuffer changed = request;
                std::memcpy(changed.data() + place, &count, 4);
                const std::int64_t peak = PeakOf([&] { Send(changed); });
                // The logic of a request needs some memory too; a count that is believed needs megabytes.
                EXPECT_LT(peak, static_cast<std::int64_t>(64 * request.size() + 65536)) << "count " << count << " at " << place;
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
