#include "Platform/Simulated/System.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

#include "Platform/Windows.h"

namespace {

using Simulated::Allocation;

class SimulatedSystem : public testing::Test {
protected:
    SimulatedSystem() { Simulated::ResetSystem(); }
    ~SimulatedSystem() override { Simulated::ResetSystem(); }
};

TEST_F(SimulatedSystem, ClockStandsStillUntilSomethingSleeps) {
    const ULONGLONG start = GetTickCount64();
    EXPECT_EQ(GetTickCount64(), start);
    Sleep(250);
    EXPECT_EQ(GetTickCount64(), start + 250);
    EXPECT_EQ(Simulated::MillisecondsSlept(), 250u);
    Simulated::SetClockTick(3);
    EXPECT_EQ(GetTickCount64(), start + 250);
    EXPECT_EQ(GetTickCount64(), start + 253);
    LARGE_INTEGER counter{}, frequency{};
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    EXPECT_EQ(frequency.QuadPart, 10'000'000);
    EXPECT_EQ(counter.QuadPart, static_cast<LONGLONG>((start + 256) * 10'000));
}

TEST_F(SimulatedSystem, RegistryReportsSizesInBytesOfTheWindowsKind) {
    Simulated::SetRegistryText(HKEY_CURRENT_USER, L"Key", L"Name", L"abc");
    DWORD size = 0, type = 0;
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, L"KEY", L"name", RRF_RT_REG_SZ, &type, nullptr, &size), LONG(ERROR_SUCCESS));
    EXPECT_EQ(size, 8u);
    EXPECT_EQ(type, Simulated::TypeText);
    wchar_t text[4] = {};
    size = 6;
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, L"Key", L"Name", RRF_RT_REG_SZ, nullptr, text, &size), LONG(ERROR_MORE_DATA));
    EXPECT_EQ(size, 8u);
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, L"Key", L"Name", RRF_RT_REG_SZ, nullptr, text, &size), LONG(ERROR_SUCCESS));
    EXPECT_EQ(std::wstring(text), L"abc");
    EXPECT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, L"Key", L"Name", RRF_RT_REG_SZ, nullptr, text, &size), LONG(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, L"Key", L"Name", RRF_RT_REG_EXPAND_SZ, nullptr, text, &size), LONG(ERROR_UNSUPPORTED_TYPE));
    Simulated::SetRegistryText(HKEY_CURRENT_USER, L"Key", L"Name", L"x", Simulated::TypeExpandText);
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, L"Key", L"Name", RRF_RT_REG_SZ, &type, text, &size), LONG(ERROR_SUCCESS));
    EXPECT_EQ(type, Simulated::TypeText);
    Simulated::RemoveRegistryValue(HKEY_CURRENT_USER, L"key", L"NAME");
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, L"Key", L"Name", RRF_RT_REG_SZ, nullptr, nullptr, nullptr), LONG(ERROR_FILE_NOT_FOUND));
}

TEST_F(SimulatedSystem, HeapCountsBytesAndFailsTheNthAllocation) {
    const int blocks = Simulated::OutstandingBlocks(Allocation::Heap);
    const std::size_t bytes = Simulated::OutstandingHeapBytes();
    Simulated::ResetHeapPeak();
    void* first = HeapAlloc(GetProcessHeap(), 0, 100);
    void* second = HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, 50);
    EXPECT_EQ(static_cast<char*>(second)[49], 0);
    EXPECT_EQ(Simulated::OutstandingHeapBytes(), bytes + 150);
    HeapFree(GetProcessHeap(), 0, first);
    HeapFree(GetProcessHeap(), 0, second);
    EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, nullptr));
    EXPECT_EQ(Simulated::OutstandingHeapBytes(), bytes);
    EXPECT_EQ(Simulated::PeakHeapBytes(), bytes + 150);
    EXPECT_EQ(Simulated::OutstandingBlocks(Allocation::Heap), blocks);
    Simulated::FailAllocation(Allocation::Heap, 1);
    EXPECT_EQ(HeapAlloc(GetProcessHeap(), 0, 1), nullptr);
    EXPECT_EQ(HeapAlloc(GetProcessHeap(), 0, SIZE_T{1} << 40), nullptr);
    EXPECT_EQ(HeapAlloc(nullptr, 0, 1), nullptr);
    EXPECT_FALSE(HeapFree(nullptr, 0, nullptr));
}

TEST_F(SimulatedSystem, OneTimeInitialisationRunsOnceAmongManyThreads) {
    INIT_ONCE once{};
    std::atomic<int> runs{0};
    int context = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
            BOOL pending = FALSE;
            void* found = nullptr;
            EXPECT_TRUE(InitOnceBeginInitialize(&once, 0, &pending, &found));
            if (pending) {
                ++runs;
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
                EXPECT_TRUE(InitOnceComplete(&once, 0, &context));
            } else {
                EXPECT_EQ(found, &context);
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(runs, 1);
}

TEST_F(SimulatedSystem, FailedInitialisationIsTriedAgain) {
    INIT_ONCE once{};
    BOOL pending = FALSE;
    EXPECT_TRUE(InitOnceBeginInitialize(&once, 0, &pending, nullptr));
    EXPECT_TRUE(pending);
    EXPECT_TRUE(InitOnceComplete(&once, INIT_ONCE_INIT_FAILED, nullptr));
    EXPECT_TRUE(InitOnceBeginInitialize(&once, 0, &pending, nullptr));
    EXPECT_TRUE(pending);
    EXPECT_TRUE(InitOnceComplete(&once, 0, nullptr));
    EXPECT_FALSE(InitOnceComplete(&once, 0, nullptr));
    EXPECT_TRUE(InitOnceBeginInitialize(&once, 0, &pending, nullptr));
    EXPECT_FALSE(pending);
}

TEST_F(SimulatedSystem, ProcessesAreOpenedAndTheirPathsRead) {
    Simulated::SetProcess({2000, L"C:\\Apps\\App.exe", 3, false, false});
    Simulated::SetProcess({2001, L"C:\\Secret.exe", 0, true, false});
    Simulated::SetProcess({2002, L"C:\\Gone.exe", 0, false, true});
    EXPECT_EQ(GetCurrentProcessId(), 1000u);
    HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, 2000);
    wchar_t path[64];
    DWORD length = 5;
    EXPECT_FALSE(QueryFullProcessImageNameW(process, 0, path, &length));
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    length = 64;
    EXPECT_TRUE(QueryFullProcessImageNameW(process, 0, path, &length));
    EXPECT_EQ(std::wstring(path, length), L"C:\\Apps\\App.exe");
    EXPECT_EQ(Simulated::OpenHandles(), 1);
    EXPECT_TRUE(CloseHandle(process));
    EXPECT_FALSE(CloseHandle(process));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(OpenProcess(0, FALSE, 2001), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_EQ(OpenProcess(0, FALSE, 9999), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    HANDLE gone = OpenProcess(0, FALSE, 2002);
    EXPECT_FALSE(QueryFullProcessImageNameW(gone, 0, path, &length));
    EXPECT_EQ(GetLastError(), ERROR_GEN_FAILURE);
    CloseHandle(gone);
    DWORD session = 0;
    EXPECT_TRUE(ProcessIdToSessionId(2000, &session));
    EXPECT_EQ(session, 3u);
    EXPECT_FALSE(ProcessIdToSessionId(9999, &session));
}

TEST_F(SimulatedSystem, LastErrorBelongsToItsThread) {
    SetLastError(5);
    std::thread([] {
        EXPECT_EQ(GetLastError(), 0u);
        SetLastError(6);
    }).join();
    EXPECT_EQ(GetLastError(), 5u);
}

TEST_F(SimulatedSystem, ThreadsHaveDifferentIds) {
    DWORD other = 0;
    std::thread([&] { other = GetCurrentThreadId(); }).join();
    EXPECT_NE(other, GetCurrentThreadId());
    std::thread([&] {
        Simulated::SetCurrentThreadId(77);
        other = GetCurrentThreadId();
    }).join();
    EXPECT_EQ(other, 77u);
}

TEST_F(SimulatedSystem, TrueVersionComesFromTheSystemLibrary) {
    Simulated::SetOsVersion(6, 1, 7601);
    auto report = reinterpret_cast<LONG (*)(RTL_OSVERSIONINFOW*)>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion"));
    ASSERT_NE(report, nullptr);
    RTL_OSVERSIONINFOW version{};
    EXPECT_EQ(report(&version), 0);
    EXPECT_EQ(version.dwMajorVersion, 6u);
    EXPECT_EQ(version.dwBuildNumber, 7601u);
    EXPECT_EQ(GetModuleHandleW(L"other"), nullptr);
    EXPECT_EQ(GetProcAddress(GetModuleHandleW(L"ntdll"), "Other"), nullptr);
}

TEST_F(SimulatedSystem, ComIsInitialisedOnceAThread) {
    std::thread([] {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
        EXPECT_EQ(Simulated::ComInitializationDepth(), 2);
        CoUninitialize();
        CoUninitialize();
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        CoUninitialize();
        Simulated::FailNextCoInitialize(E_FAIL);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), E_FAIL);
        EXPECT_EQ(Simulated::ComInitializationDepth(), 0);
    }).join();
    EXPECT_EQ(Simulated::CoInitializeCalls().size(), 5u);
    void* object = &object;
    EXPECT_EQ(CoCreateInstance({}, nullptr, CLSCTX_INPROC_SERVER, IidOf<IUnknown>(), &object), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(object, nullptr);
    CLSID id{};
    EXPECT_EQ(CLSIDFromProgID(L"None.Such", &id), CO_E_CLASSSTRING);
}

TEST_F(SimulatedSystem, MessagesOfCodesAreFormattedOrRefused) {
    char text[128];
    EXPECT_GT(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 5, 0, text, sizeof text, nullptr), 0u);
    EXPECT_STREQ(text, "Access is denied.\r\n");
    EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 5, 0, text, 4, nullptr), 0u);
    EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 0x2FFFFFFF, 0, text, sizeof text, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_MR_MID_NOT_FOUND);
}

TEST_F(SimulatedSystem, KnownFolderIsTheTestsOwnOrNone) {
    LPWSTR path = nullptr;
    EXPECT_TRUE(FAILED(SHGetKnownFolderPath(FOLDERID_Desktop, 0, nullptr, &path)));
    EXPECT_EQ(path, nullptr);
    Simulated::SetKnownFolder(L"/tmp/x");
    const int blocks = Simulated::OutstandingBlocks(Allocation::Task);
    EXPECT_EQ(SHGetKnownFolderPath(FOLDERID_Desktop, 0, nullptr, &path), S_OK);
    EXPECT_EQ(std::wstring(path), L"/tmp/x");
    CoTaskMemFree(path);
    EXPECT_EQ(Simulated::OutstandingBlocks(Allocation::Task), blocks);
}

std::wstring Wide(std::string_view text, DWORD flags = 0) {
    wchar_t target[64];
    const int length = MultiByteToWideChar(CP_UTF8, flags, text.data(), static_cast<int>(text.size()), target, 64);
    return std::wstring(target, static_cast<std::size_t>(length));
}
std::string Narrow(std::wstring_view text, DWORD flags = 0) {
    char target[64];
    const int length = WideCharToMultiByte(CP_UTF8, flags, text.data(), static_cast<int>(text.size()), target, 64, nullptr, nullptr);
    return std::string(target, static_cast<std::size_t>(length));
}

TEST_F(SimulatedSystem, BrokenUtf8BecomesOneReplacementForEachBrokenPiece) {
    EXPECT_EQ(Wide("a\xF0\x9F\x98z"), L"a\xFFFDz");
    EXPECT_EQ(Wide("\xC0\xAF"), L"\xFFFD\xFFFD");
    EXPECT_EQ(Wide("\xED\xA0\x80"), L"\xFFFD\xFFFD\xFFFD");
    EXPECT_EQ(Wide("\xF4\x90\x80\x80"), L"\xFFFD\xFFFD\xFFFD\xFFFD");
    EXPECT_EQ(Wide("\xE2\x82"), L"\xFFFD");
    SetLastError(0);
    EXPECT_EQ(Wide("\xE2\x82", MB_ERR_INVALID_CHARS), L"");
    EXPECT_EQ(GetLastError(), ERROR_NO_UNICODE_TRANSLATION);
}

TEST_F(SimulatedSystem, SurrogatesPairUpAndHalvesAreReplaced) {
    const wchar_t high = static_cast<wchar_t>(0xD83D), low = static_cast<wchar_t>(0xDE00);
    EXPECT_EQ(Narrow(std::wstring{high, low}), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Narrow(std::wstring{low, high}), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(Narrow(std::wstring{high, L'a'}), "\xEF\xBF\xBD" "a");
    EXPECT_EQ(Narrow(std::wstring{high}, WC_ERR_INVALID_CHARS), "");
    EXPECT_EQ(Wide("\xF0\x9F\x98\x80"), (std::wstring{high, low}));
}

TEST_F(SimulatedSystem, ConversionSizesAndErrorsAreThePublishedOnes) {
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", -1, nullptr, 0), 4);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "\xC3\xA4z", 3, nullptr, 0), 2);
    wchar_t small[1];
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", 3, small, 1), 0);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "", 0, nullptr, 0), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "a", 1, nullptr, 0), 0);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, nullptr, 1, nullptr, 0, nullptr, nullptr), 0);
}

}  // namespace
