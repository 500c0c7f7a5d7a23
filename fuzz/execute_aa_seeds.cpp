// Writes the seeds of the execute_aa target into a folder: ninja make_seeds_execute_aa, then
// build/.../make_seeds_execute_aa fuzz/seeds/execute_aa. They name the window, the client and the containers of the
// target's desktop, so that most of them get to the logic.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

#include "RuntimeCore/Requests/Catalogue.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/VariantValue.h"
#include "tests/Support/FilledRequest.h"

namespace {

using namespace Zorvex;

constexpr std::uint32_t Client = 7;
constexpr std::uint8_t NoFault = 0xFF;
const HWND Main = reinterpret_cast<HWND>(INT_PTR{0x10010});
const HWND View = reinterpret_cast<HWND>(INT_PTR{0x10020});

std::filesystem::path g_folder;
int g_count = 0;

AAObjectIdentifier Element(std::uint32_t container, std::int32_t child = 0) {
    AAObjectIdentifier identifier;
    identifier.hWnd = identifier.originalWnd = Main;
    identifier.clientPid = Client;
    identifier.containerId = container;
    identifier.childId = child;
    identifier.isDomAria = 1;
    return identifier;
}

void WriteSeed(const std::string& name, std::uint8_t fault, std::uint8_t at, std::uint32_t number, const RequestBuffer& request) {
    std::ofstream file(g_folder / name, std::ios::binary);
    const char start[] = {static_cast<char>(fault), static_cast<char>(at), static_cast<char>(number)};
    file.write(start, sizeof start);
    constexpr std::size_t beforeFields = 4 + 5;  // the length, then the number with its tag
    if (request.size() > beforeFields)
        file.write(reinterpret_cast<const char*>(request.data() + beforeFields), static_cast<std::streamsize>(request.size() - beforeFields));
    if (!file) {
        std::fprintf(stderr, "%s can't be written\n", name.c_str());
        std::exit(1);
    }
    ++g_count;
}

std::string NameOf(RequestId id) {
    const std::string text = ToText(id);
    return text.substr(text.rfind(':') + 1);
}

// The request as it is, and on wish with each kind of fault in an early and in a later call.
template <class Request>
void Write(const Request& request, const std::string& variant = "", bool withFaults = false) {
    const auto number = static_cast<std::uint32_t>(Request::kRequestId);
    const std::string name = NameOf(Request::kRequestId) + variant;
    const RequestBuffer bytes = EncodeRequest(request);
    WriteSeed(name, NoFault, 0, number, bytes);
    if (!withFaults) return;
    for (const std::uint8_t at : {0, 5})
        for (std::uint8_t kind = 0; kind < 8; ++kind)
            WriteSeed(name + "-fault" + std::to_string(kind) + "-call" + std::to_string(at + 1), kind, at, number, bytes);
}

void WriteOneOfEach() {
    Testing::RequestContents contents;
    contents.element = Element(3);
    contents.window = Main;
    contents.clientPid = Client;
    contents.point = {5, 55};
    for (std::uint32_t id = 0; id < kRequestCount; ++id)
        WithRequestType(static_cast<RequestId>(id), [&]<class Request>() { Write(Testing::FilledRequest<Request>(contents)); });
    WriteSeed("Unknown", NoFault, 0, kRequestCount, {});
}

void WriteFromPoint() {
    FindElemFromPointRequest request;
    request.clientPid = Client;
    request.window = Main;
    request.relatedElement = RelatedElementKind::ClosestComboBox;
    request.point = {5, 5};
    for (const std::uint32_t flags : {1u, 2u, 15u}) {
        request.flags = flags;
        Write(request, "-flags" + std::to_string(flags), true);
    }
}

template <class Request>
void WriteAttributes(std::initializer_list<const wchar_t*> names) {
    int place = 0;
    for (const wchar_t* name : names) {
        Request request;
        request.element = Element(place % 5 + 1);
        request.attributeName = name;
        Write(request, "-" + std::to_string(place), place == 0);
        ++place;
    }
}

std::shared_ptr<ISelectorTag> Tag(std::initializer_list<std::pair<const wchar_t*, std::shared_ptr<IAttrValue>>> attributes) {
    auto tag = std::make_shared<AaTag>();
    for (const auto& [name, value] : attributes) tag->SetAttribute(name, value);
    return tag;
}

void WriteSearches() {
    FindSelectorsRequest request;
    request.root = Element(1);
    request.timeoutMilliseconds = 2000;
    request.sequence = 100;
    auto& entry = request.selectors.emplace_back();
    entry.tags = {Tag({{L"role", std::make_shared<StringValue>(L"*")}}),
                  Tag({{L"name", std::make_shared<StringValue>(L"Tow", MatchingTypeFuzzy, 0.1)},
                       {L"aastate", std::make_shared<StringValue>(L"normal")}})};
    entry.options.acceptHidden = false;
    entry.options.keepIntermediateAlways = true;
    Write(request, "-fuzzy", true);

    entry.tags = {Tag({{L"name", std::make_shared<StringValue>(L"(O|T)[a-z]+", MatchingTypeRegex)},
                       {L"idx", std::make_shared<NumberValue>(2)}})};
    entry.options = {};
    entry.options.scope = Search::SearchScope::DescendantsOfTopLevel;
    entry.options.maxResults = 1;
    request.selectors.emplace_back();
    Write(request, "-regex");

    request.root = Element(0);
    request.selectors[1].tags = {Tag({{L"text", std::make_shared<VariantValue>(CComVariant(L"Text"))}}),
                                 Tag({{L"automationid", std::make_shared<StringValue>(L"edit", MatchingTypeFuzzyAlternative)}}), nullptr};
    request.selectors[1].options.minimumScore = 0.5;
    request.selectors[1].options.keepIntermediateOnError = true;
    Write(request, "-window");
}

void WriteOthers() {
    for (std::uint32_t container = 1; container <= 5; ++container) {
        IsValidIdentifierRequest valid;
        valid.element = Element(container, container == 2 ? 1 : 0);
        Write(valid, "-" + std::to_string(container));
    }
    GetSiblingRequest sibling;
    sibling.element = Element(2, 1);
    sibling.offset = 1;
    Write(sibling, "-simple", true);
    sibling.element = Element(4);
    sibling.offset = -2;
    Write(sibling, "-back", true);
    AreEqualRequest equal;
    equal.first = Element(4);
    equal.second = Element(5);
    Write(equal, "-differ", true);
    GetFocusedElemRequest focused;
    focused.clientPid = Client;
    focused.window = Main;
    Write(focused, "-main", true);
    GetObjectIdFromEventRequest event;
    event.clientPid = Client;
    event.window = View;
    event.childId = 1;
    Write(event, "-view", true);
    FindElementWithRoleRequest role;
    role.window = Main;
    role.role = 29;
    role.maximumDepth = -1;
    Write(role, "-cell", true);
    GetWndsByAaNameRequest windows;
    windows.accessibleName = std::make_shared<StringValue>(L"*");
    Write(windows, "-all", true);
    UnregisterAllContainersByClientPidRequest unregister;
    unregister.clientPid = 99;
    Write(unregister, "-stranger");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    g_folder = argv[1];
    std::filesystem::create_directories(g_folder);
    WriteOneOfEach();
    WriteFromPoint();
    WriteAttributes<GetElemAttrRequest>({L"role", L"name", L"automationid", L"labeledby", L"virtualname", L"text", L"helpText", L"aastate",
                                         L"rowName", L"value", L"screenRect", L"unknown"});
    WriteAttributes<GetNativeAttributeRequest>({L"accName", L"accRole", L"accState", L"accChildCount", L"accLocation", L"states",
                                                L"uniqueID", L"attributes", L"attributes.tag"});
    WriteSearches();
    WriteOthers();
    std::printf("%d seeds written\n", g_count);
    return 0;
}
