#include "InProc/Vantrel/AAContainerCache.h"

#include <gtest/gtest.h>

#include "tests/Support/DesktopFixture.h"
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
