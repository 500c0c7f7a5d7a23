#include "InProc/Vantrel/AAContainerCache.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <thread>

#include "Common/UTILITY/LogRouter.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [
    {"id": "main", "class": "Main", "rectangle": [0, 0, 100, 100], "objects": {"window": {
        "id": "root", "role": "window", "name": "Main", "rectangle": [0, 0, 100, 100],
        "children": [{"id": "a", "role": "push button", "name": "A"}, {"id": "b", "role": "push button", "name": "B"}]}}},
    {"id": "browser", "class": "Chrome_WidgetWin_1"},
    {"id": "fox", "class": "MozillaWindowClass", "process": 20},
    {"id": "mail", "class": "MozillaWindowClass", "process": 21}],
  "processes": [{"id": 1000, "path": "C:\\app.exe", "current": true}, {"id": 20, "path": "C:\\firefox.exe"},
                {"id": 21, "path": "C:\\thunderbird.exe"}]})";

class AAContainerCacheTest : public testing::Test {
protected:
    ~AAContainerCacheTest() override {
        for (const std::uint32_t pid : {1u, 2u}) cache.UnregisterAllContainersByClientPid(pid);
    }

    AAElement Element(const char* id) { return {desktop.Window("main"), desktop.Element(id), CComVariant(CHILDID_SELF)}; }
    AAObjectIdentifier Register(std::uint32_t pid, const char* id) {
        return cache.RegisterObject({pid, desktop.Window("main")}, Element(id));
    }

    DesktopFixture desktop{kDesktop};
    AAContainerCache cache;
    LogCapture log;
};

TEST_F(AAContainerCacheTest, SameObjectRegisteredTwiceHasOneIdAndOneReference) {
    const auto first = Register(1, "a");
    const std::size_t references = desktop.OutstandingReferences();
    const auto second = Register(1, "a");
    EXPECT_NE(first.containerId, 0u);
    EXPECT_EQ(first, second);
    EXPECT_EQ(desktop.OutstandingReferences(), references);
    EXPECT_TRUE(log.Contains("already registered as ID="));
    EXPECT_EQ(log.Count("newly registered as clientPId=1 ID="), 1u);
}

// Two faces of one object, as a server with tear-off interfaces hands them out.
TEST_F(AAContainerCacheTest, SameObjectUnderTwoPointersHasOneId) {
    FakeAccessible object, face;
    face.unknown = &object;
    const std::uint32_t id = cache.RegisterContainerObject(1, static_cast<IAccessible*>(&object));
    EXPECT_NE(id, 0u);
    EXPECT_EQ(cache.RegisterContainerObject(1, static_cast<IAccessible*>(&face)), id);
    EXPECT_EQ(object.references, 1);
    EXPECT_EQ(face.references, 0);
    cache.UnregisterAllContainersByClientPid(1);
    EXPECT_EQ(object.references, 0);
}

TEST_F(AAContainerCacheTest, ContainerThatHidesItsIdentityWhenItIsLetGoKeepsItsOldId) {
    // Somebody else holds it too, so it stays the object that it is.
    const CComPtr<IAccessible> object = desktop.Element("a");
    const auto first = Register(1, "a");
    desktop.AddFault("a", {.call = "QueryInterface", .result = E_FAIL});
    log.Clear();
    cache.UnregisterAllContainersByClientPid(1);
    EXPECT_TRUE(log.Contains("erasing 0 LPUNKNOWN pointers for clientPid 1"));
    EXPECT_TRUE(log.Contains("erasing 1 AA containers for clientPid 1"));
    EXPECT_EQ(desktop.OutstandingReferences("a"), 1);
    desktop.ClearFaults();
    const auto second = Register(1, "a");
    EXPECT_EQ(second.containerId, first.containerId);
    EXPECT_EQ(cache.LookupIdentifier(second).hWnd, nullptr);
}

// Whether the work ends soon on a thread of its own: it doesn't while a lock that it needs is held.
bool EndsSoon(std::function<void()> work) {
    auto done = std::make_shared<std::promise<void>>();
    auto future = done->get_future();
    std::thread([done, work = std::move(work)] {
        work();
        done->set_value();
    }).detach();
    return future.wait_for(std::chrono::seconds(5)) == std::future_status::ready;
}

// Does something once, in the first call and in the last release of what it holds.
class CallingAccessible : public FakeAccessible {
public:
    std::function<void()> onQuery, onLastRelease;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        if (auto work = std::exchange(onQuery, nullptr)) work();
        return FakeAccessible::QueryInterface(riid, object);
    }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = FakeAccessible::Release();
        if (left == 0)
            if (auto work = std::exchange(onLastRelease, nullptr)) work();
        return left;
    }
};

TEST_F(AAContainerCacheTest, ForeignObjectsAreAskedAndLetGoWithoutTheLock) {
    const auto other = Register(2, "b");
    const auto lookUp = [&] { EXPECT_TRUE(cache.LookupIdentifier(other).IsValid()); };
    CallingAccessible object;
    bool registering = false, asking = false, letGo = false;
    object.onQuery = [&] { registering = EndsSoon(lookUp); };
    cache.RegisterContainerObject(1, static_cast<IAccessible*>(&object));
    object.onQuery = [&] { asking = EndsSoon(lookUp); };
    object.onLastRelease = [&] { letGo = EndsSoon(lookUp); };
    cache.UnregisterAllContainersByClientPid(1);
    EXPECT_TRUE(registering);
    EXPECT_TRUE(asking);
    EXPECT_TRUE(letGo);
    EXPECT_EQ(object.references, 0);
}

// Does something in the middle of a registration, where the lock is held: when its line is written.
class RegistrationWatcher : public LogPlatform {
public:
    explicit RegistrationWatcher(std::function<void()> work) : m_work(std::move(work)), m_before(LogRouter::OfProcess().ExchangePlatform(*this)) {}
    ~RegistrationWatcher() override { LogRouter::OfProcess().ExchangePlatform(m_before); }

    std::optional<std::wstring> ReadSetting(const wchar_t*) override { return L"VERBOSE"; }
    void DebugOutput(const char* line) override {
        if (std::string_view(line).find("newly registered") != std::string_view::npos) m_work();
    }
    std::wstring ProcessPath() override { return {}; }
    void RegisterEvents(EventListener, void*) override {}
    void UnregisterEvents() override {}
    bool EventWanted(BYTE) override { return false; }
    void WriteEvent(BYTE, const std::wstring&) override {}

private:
    std::function<void()> m_work;
    LogPlatform& m_before;
};

TEST_F(AAContainerCacheTest, LookupOfAWindowIdentifierTakesNoLock) {
    AAObjectIdentifier windowAlone;
    windowAlone.hWnd = desktop.Window("main");
    bool ended = false;
    {
        const RegistrationWatcher watcher([&] { ended = EndsSoon([&] { cache.LookupIdentifier(windowAlone); }); });
        Register(1, "a");
    }
    EXPECT_TRUE(ended);
}

TEST_F(AAContainerCacheTest, NullObjectIsNotRegistered) {
    EXPECT_EQ(cache.RegisterContainerObject(1, nullptr), 0u);
    EXPECT_TRUE(log.Contains("QueryInterface(IUnknown) failed, hr="));
}

TEST_F(AAContainerCacheTest, IdentifierCarriesTheClientKeyAndTheChild) {
    AAElement element = Element("root");
    element.child = CComVariant(2);
    const auto identifier = cache.RegisterObject({1, desktop.Window("browser")}, std::move(element));
    EXPECT_EQ(identifier.hWnd, desktop.Window("main"));
    EXPECT_EQ(identifier.originalWnd, desktop.Window("browser"));
    EXPECT_EQ(identifier.clientPid, 1u);
    EXPECT_EQ(identifier.childId, 2);
    const AAElement found = cache.LookupIdentifier(identifier);
    EXPECT_TRUE(found.IsValid());
    EXPECT_EQ(found.child.lVal, 2);
}

TEST_F(AAContainerCacheTest, SecondClientIsToldTheFirstOnesIdAndCannotLookItUp) {
    const auto first = Register(1, "a");
    const auto second = Register(2, "a");
    EXPECT_EQ(first.containerId, second.containerId);
    EXPECT_EQ(second.clientPid, 2u);
    log.Clear();
    const AAElement missing = cache.LookupIdentifier(second);
    EXPECT_EQ(missing.hWnd, nullptr);
    EXPECT_EQ(missing.spAcc, nullptr);
    EXPECT_EQ(missing.child.vt, VT_I4);
    EXPECT_TRUE(log.Contains("clientPid=2 containerId=" + std::to_string(second.containerId) + " not found"));
    EXPECT_TRUE(cache.LookupIdentifier(first).IsValid());
    EXPECT_TRUE(log.Contains("found AA object"));
}

TEST_F(AAContainerCacheTest, AfterUnregisteringIdsAreGoneAndNewOnesAreHigher) {
    const auto first = Register(1, "a");
    const auto other = Register(1, "b");
    log.Clear();
    cache.UnregisterAllContainersByClientPid(1);
    EXPECT_TRUE(log.Contains("erasing 2 LPUNKNOWN pointers for clientPid 1"));
    EXPECT_TRUE(log.Contains("erasing 2 AA containers for clientPid 1"));
    EXPECT_FALSE(cache.LookupIdentifier(first).IsValid());
    EXPECT_FALSE(cache.LookupIdentifier(other).IsValid());
    EXPECT_EQ(desktop.OutstandingReferences(), 0u);
    EXPECT_GT(Register(1, "a").containerId, other.containerId);
}

TEST_F(AAContainerCacheTest, UnregisteringAnUnknownClientDoesAndLogsNothing) {
    const auto first = Register(1, "a");
    log.Clear();
    cache.UnregisterAllContainersByClientPid(99);
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_TRUE(cache.LookupIdentifier(first).IsValid());
}

TEST_F(AAContainerCacheTest, UnregisteringAKnownClientTwiceLogsZeroTheSecondTime) {
    Register(1, "a");
    cache.UnregisterAllContainersByClientPid(1);
    log.Clear();
    cache.UnregisterAllContainersByClientPid(1);
    EXPECT_TRUE(log.Contains("erasing 0 AA containers for clientPid 1"));
}

TEST_F(AAContainerCacheTest, ChildOfAnotherTypeGivesTheWindowIdentifier) {
    AAElement element = Element("a");
    element.hWnd = desktop.Window("browser");
    element.child = CComVariant(L"text");
    const auto identifier = cache.RegisterObject({1, desktop.Window("main")}, std::move(element));
    EXPECT_EQ(identifier.hWnd, desktop.Window("browser"));
    EXPECT_EQ(identifier.containerId, 0u);
    EXPECT_EQ(identifier.isDomAria, 0u);
    EXPECT_EQ(identifier.clientPid, 1u);
    EXPECT_EQ(identifier.originalWnd, desktop.Window("main"));
    EXPECT_TRUE(log.Contains("invalid aaObj, returning WND identifier"));
}

TEST_F(AAContainerCacheTest, ElementWithoutAnObjectGivesTheWindowIdentifier) {
    const auto identifier = cache.RegisterObject({1, nullptr}, AAElement{desktop.Window("main"), nullptr, CComVariant(CHILDID_SELF)});
    EXPECT_EQ(identifier.hWnd, desktop.Window("main"));
    EXPECT_EQ(identifier.containerId, 0u);
}

TEST_F(AAContainerCacheTest, WindowThatIsNoneGivesTheZeroIdentifierWithoutALine) {
    AAElement element = Element("a");
    element.hWnd = reinterpret_cast<HWND>(0x7777777);
    EXPECT_EQ(cache.RegisterObject({1, nullptr}, std::move(element)), AAObjectIdentifier{});
    EXPECT_TRUE(log.Lines().empty());
}

TEST_F(AAContainerCacheTest, DestroyedWindowComesBackWithoutItsObjectAlthoughTheEntryIsThere) {
    const auto identifier = Register(1, "a");
    desktop.DestroyWindow("main");
    log.Clear();
    const AAElement element = cache.LookupIdentifier(identifier);
    EXPECT_EQ(element.hWnd, identifier.hWnd);
    EXPECT_EQ(element.spAcc, nullptr);
    EXPECT_EQ(cache.ContainerCount(), 1u);
    EXPECT_TRUE(log.Contains("invalid ID="));
    EXPECT_TRUE(log.Contains(", returning WND identifier"));
}

TEST_F(AAContainerCacheTest, WindowIdentifierGivesTheWindowWithoutAnObject) {
    AAObjectIdentifier identifier;
    identifier.hWnd = desktop.Window("main");
    const AAElement element = cache.LookupIdentifier(identifier);
    EXPECT_EQ(element.hWnd, desktop.Window("main"));
    EXPECT_EQ(element.spAcc, nullptr);
    EXPECT_EQ(element.child.lVal, 0);
}

TEST_F(AAContainerCacheTest, DomAriaFollowsTheWindowsClassUnlessItIsGiven) {
    const auto isDomAria = [&](const char* window, std::optional<std::uint32_t> given) {
        AAElement element = Element("a");
        element.hWnd = desktop.Window(window);
        return cache.RegisterObject({1, nullptr}, std::move(element), given).isDomAria;
    };
    EXPECT_EQ(isDomAria("browser", std::nullopt), 1u);
    EXPECT_EQ(isDomAria("fox", std::nullopt), 1u);
    EXPECT_EQ(isDomAria("mail", std::nullopt), 0u);
    EXPECT_EQ(isDomAria("main", std::nullopt), 0u);
    EXPECT_EQ(isDomAria("browser", 0), 0u);
    EXPECT_EQ(isDomAria("main", 1), 1u);
}

TEST_F(AAContainerCacheTest, ObjectWithoutAnIdentityIsNotRegistered) {
    desktop.AddFault("a", {.call = "QueryInterface", .result = E_NOINTERFACE});
    EXPECT_EQ(Register(1, "a"), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("QueryInterface(IUnknown) failed, hr=80004002"));
    EXPECT_TRUE(log.Contains("RegisterContainerObject failed"));
}

TEST_F(AAContainerCacheTest, SuccessWithANullIdentityIsNotRegistered) {
    desktop.AddFault("a", {.call = "QueryInterface", .null = true});
    EXPECT_EQ(Register(1, "a"), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("QueryInterface(IUnknown) failed, NULL pointer returned"));
}

TEST_F(AAContainerCacheTest, DetachingLeaksEveryReferenceOnPurpose) {
    CComPtr<IAccessible> a = desktop.Element("a");
    a.p->AddRef();
    const ULONG before = a.p->Release();
    {
        AAContainerCache leaking;
        leaking.RegisterContainerObject(5, a);
        log.Clear();
    }
    EXPECT_TRUE(log.Contains("cleaning up 1 client PIDs and 1 ptrs"));
    EXPECT_TRUE(log.Contains("leaking 1 AA containers for clientPid 5"));
    EXPECT_TRUE(log.Contains("cleanup finished"));
    a.p->AddRef();
    EXPECT_EQ(a.p->Release(), before + 1);
    a.p->Release();  // what the cache leaked
}

}  // namespace
}  // namespace Zorvex::Testing
