// Requests with something sensible in every field, for tests and seeds that go through the whole catalogue.
#pragma once

#include <memory>
#include <type_traits>
#include <vector>

#include "RuntimeCore/Requests/Catalogue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex::Testing {

// What the fields of a kind hold.
struct RequestContents {
    AAObjectIdentifier element;
    HWND window = nullptr;
    std::uint32_t clientPid = 0;  // 0: like every other number
    std::uint32_t number = 3;
    CString text = L"name";
    POINT point{2, 2};
};

template <class Request>
Request FilledRequest(const RequestContents& contents) {
    Request request;
    const auto fill = [&](const char* name, auto& field) {
        using Field = std::remove_reference_t<decltype(field)>;
        if constexpr (std::is_same_v<Field, AAObjectIdentifier>) field = contents.element;
        else if constexpr (std::is_same_v<Field, std::vector<AAObjectIdentifier>>) field = {contents.element, contents.element};
        else if constexpr (std::is_same_v<Field, HWND>) field = contents.window;
        else if constexpr (std::is_same_v<Field, CString>) field = contents.text;
        else if constexpr (std::is_same_v<Field, POINT>) field = contents.point;
        else if constexpr (std::is_same_v<Field, std::shared_ptr<StringValue>>) field = std::make_shared<StringValue>(L"M*");
        else if constexpr (std::is_same_v<Field, std::vector<Search::SelectorEntry>>) {
            auto tag = std::make_shared<AaTag>();
            tag->SetAttribute(L"name", std::make_shared<StringValue>(L"OK", 3u, 0.5));
            field.emplace_back();
            field.back().tags = {tag, tag};
        } else if constexpr (std::is_same_v<Field, std::uint32_t> || std::is_same_v<Field, std::int32_t>) {
            const bool isClient = contents.clientPid != 0 && std::string_view(name) == "clientPid";
            field = static_cast<Field>(isClient ? contents.clientPid : contents.number);
        }
    };
    Request::Fields(request, fill);
    return request;
}

}  // namespace Zorvex::Testing
