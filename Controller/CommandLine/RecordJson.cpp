#include "Controller/CommandLine/RecordJson.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <nlohmann/json.hpp>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/Identifier.h"
#include "Controller/CommandLine/Output.h"
#include "Controller/CommandLine/SelectorJson.h"
#include "RuntimeCore/Requests/Catalogue.h"

namespace Zorvex::Controller {

namespace {

using Json = nlohmann::ordered_json;

template <class T>
struct IsVector : std::false_type {};
template <class T>
struct IsVector<std::vector<T>> : std::true_type {};
template <class T>
struct IsMap : std::false_type {};
template <class K, class V, class L>
struct IsMap<std::map<K, V, L>> : std::true_type {};

[[noreturn]] void Fail(const std::string& path, const std::string& text) {
    throw CommandFailure(ExitCode::WrongArguments, (path.empty() ? std::string("the request") : path) + ": " + text);
}

std::string Below(const std::string& path, const std::string& name) { return path.empty() ? name : path + "." + name; }

// ---- What a field's type is called for a person.

template <class T>
std::string TypeText() {
    if constexpr (std::is_same_v<T, bool>) return "true or false";
    else if constexpr (std::is_same_v<T, CString>) return "text";
    else if constexpr (std::is_same_v<T, HWND>) return "window";
    else if constexpr (std::is_same_v<T, RECT>) return "rectangle";
    else if constexpr (std::is_same_v<T, POINT>) return "point";
    else if constexpr (std::is_same_v<T, AAObjectIdentifier>) return "identifier";
    else if constexpr (std::is_same_v<T, CComVariant>) return "variant";
    else if constexpr (std::is_same_v<T, Search::SelectorEntry>) return "selector";
    else if constexpr (std::is_same_v<T, std::shared_ptr<StringValue>>) return "value";
    else if constexpr (IsVector<T>::value) return "list of " + TypeText<typename T::value_type>();
    else if constexpr (IsMap<T>::value) return "texts by name";
    else if constexpr (FieldRecord<T>) return "object";
    else return "number";
}

// ---- Reading.

template <class T>
void Read(const Json& json, T& value, const std::string& path, const RequestDefaults& defaults);

std::int64_t ReadInteger(const Json& json, const std::string& path, std::int64_t minimum, std::int64_t maximum) {
    std::int64_t number = 0;
    if (json.is_number_integer()) {
        if (json.is_number_unsigned() && json.get<std::uint64_t>() > static_cast<std::uint64_t>(maximum)) Fail(path, "the number is too large");
        number = json.get<std::int64_t>();
    } else if (json.is_string()) {
        // "0x8004031E": results, handles and flags read better so.
        const std::string text = json.get<std::string>();
        std::uint64_t bits = 0;
        if (text.rfind("0x", 0) != 0) Fail(path, "a number is expected");
        const auto [end, problem] = std::from_chars(text.data() + 2, text.data() + text.size(), bits, 16);
        if (problem != std::errc() || end != text.data() + text.size() || text.size() == 2) Fail(path, "a number is expected");
        if (bits > 0xFFFFFFFFull) Fail(path, "the number is too large");
        number = minimum < 0 && maximum <= 0x7FFFFFFF ? static_cast<std::int32_t>(bits) : static_cast<std::int64_t>(bits);
    } else {
        Fail(path, "a number is expected");
    }
    if (number < minimum) Fail(path, "the number is too small");
    if (number > maximum) Fail(path, "the number is too large");
    return number;
}

const Json& ReadObject(const Json& json, const std::string& path) {
    if (!json.is_object()) Fail(path, "an object is expected");
    return json;
}

template <class T>
void ReadFields(const Json& json, T& record, const std::string& path, const RequestDefaults& defaults) {
    ReadObject(json, path);
    std::string names;
    std::vector<std::string> known;
    T::Fields(record, [&](const char* name, auto& field) {
        known.emplace_back(name);
        names += (names.empty() ? "" : ", ") + known.back();
        if (const auto found = json.find(name); found != json.end()) Read(*found, field, Below(path, name), defaults);
    });
    for (const auto& item : json.items())
        if (std::find(known.begin(), known.end(), item.key()) == known.end())
            Fail(Below(path, item.key()), "there is no such field; there are " + (names.empty() ? "none" : names));
}

template <class Find>
void ReadNumberFields(const Json& json, Find record, const std::string& path) {
    ReadObject(json, path);
    for (const auto& item : json.items()) {
        LONG* const field = record(item.key());
        if (!field) Fail(Below(path, item.key()), "there is no such field");
        *field = static_cast<LONG>(ReadInteger(item.value(), Below(path, item.key()), INT32_MIN, INT32_MAX));
    }
}

template <class T>
void Read(const Json& json, T& value, const std::string& path, const RequestDefaults& defaults) {
    if constexpr (std::is_same_v<T, bool>) {
        if (!json.is_boolean()) Fail(path, "true or false is expected");
        value = json.get<bool>();
    } else if constexpr (std::is_same_v<T, CString>) {
        if (!json.is_string()) Fail(path, "a text is expected");
        value = CString(WideText(json.get<std::string>()));
    } else if constexpr (std::is_same_v<T, HWND>) {
        value = HandleOf(static_cast<std::uint32_t>(ReadInteger(json, path, INT32_MIN, UINT32_MAX)));
    } else if constexpr (std::is_same_v<T, RECT>) {
        ReadNumberFields(json, [&](const std::string& name) -> LONG* {
            return name == "left" ? &value.left : name == "top" ? &value.top : name == "right" ? &value.right : name == "bottom" ? &value.bottom : nullptr;
        }, path);
    } else if constexpr (std::is_same_v<T, POINT>) {
        ReadNumberFields(json, [&](const std::string& name) -> LONG* { return name == "x" ? &value.x : name == "y" ? &value.y : nullptr; }, path);
    } else if constexpr (std::is_same_v<T, AAObjectIdentifier>) {
        if (json.is_string()) {
            const auto identifier = ReadIdentifier(WideText(json.get<std::string>()));
            if (!identifier) Fail(path, "this is no identifier such as 0x10102:3:0:0:1:0x10102");
            value = *identifier;
        } else {
            ReadFields(json, value, path, defaults);
        }
    } else if constexpr (std::is_same_v<T, Search::SelectorEntry>) {
        ReadSelectorEntry(&json, value, path);
    } else if constexpr (std::is_same_v<T, std::shared_ptr<StringValue>>) {
        value = ReadStringValue(&json, path);
    } else if constexpr (IsVector<T>::value) {
        if (!json.is_array()) Fail(path, "a list is expected");
        for (std::size_t i = 0; i < json.size(); ++i)
            Read(json[i], value.emplace_back(), path + "[" + std::to_string(i) + "]", defaults);
    } else if constexpr (IsMap<T>::value) {
        for (const auto& item : ReadObject(json, path).items()) {
            if constexpr (std::is_same_v<typename T::key_type, CString>)
                Read(item.value(), value[CString(WideText(item.key()))], Below(path, item.key()), defaults);
            else Fail(path, "this comes in answers alone");
        }
    } else if constexpr (FieldRecord<T>) {
        ReadFields(json, value, path, defaults);
    } else if constexpr (std::is_enum_v<T> || std::is_integral_v<T>) {
        using Number = typename std::conditional_t<std::is_enum_v<T>, std::underlying_type<T>, std::type_identity<T>>::type;
        value = static_cast<T>(ReadInteger(json, path, static_cast<std::int64_t>(std::numeric_limits<Number>::min()),
                                           static_cast<std::int64_t>(std::numeric_limits<Number>::max())));
    } else {
        Fail(path, "this comes in answers alone");
    }
}

// ---- Writing.

template <class T>
Json Write(const T& value);

template <class T>
Json WriteFields(const T& record) {
    Json json = Json::object();
    T::Fields(record, [&](const char* name, const auto& field) { json[name] = Write(field); });
    return json;
}

Json WriteStatistics(const ScoreStatistics& stats) {
    return {{"mean", stats.mean}, {"count", stats.count}, {"max", stats.max}, {"min", stats.min}, {"sum", stats.sum}};
}

Json WriteVariantValue(const VARIANT& value) {
    if (value.vt == VT_EMPTY) return nullptr;
    if (value.vt == VT_BSTR) return NarrowText(std::wstring_view(value.bstrVal ? value.bstrVal : L"", ::SysStringLen(value.bstrVal)));
    if (value.vt == VT_I4) return value.lVal;
    if (value.vt == VT_BOOL) return value.boolVal != VARIANT_FALSE;
    if (value.vt == (VT_ARRAY | VT_VARIANT) || value.vt == (VT_ARRAY | VT_I4) || value.vt == (VT_ARRAY | VT_BSTR)) {
        Json list = Json::array();
        LONG first = 0, last = -1;
        if (value.parray && SUCCEEDED(::SafeArrayGetLBound(value.parray, 1, &first)) && SUCCEEDED(::SafeArrayGetUBound(value.parray, 1, &last)))
            for (LONG i = first; i <= last; ++i) {
                CComVariant item;
                if (value.vt == (VT_ARRAY | VT_VARIANT)) {
                    if (FAILED(::SafeArrayGetElement(value.parray, &i, &item))) break;
                } else if (value.vt == (VT_ARRAY | VT_I4)) {
                    item = CComVariant(LONG{0});
                    if (FAILED(::SafeArrayGetElement(value.parray, &i, &item.lVal))) break;
                } else {
                    BSTR text = nullptr;
                    if (FAILED(::SafeArrayGetElement(value.parray, &i, &text))) break;
                    item.vt = VT_BSTR;
                    item.bstrVal = text;
                }
                list.push_back(WriteVariantValue(item));
            }
        return list;
    }
    return {{"type", value.vt}};
}

Json WriteFound(const Search::AaCrossProcessSearchResult& result) {
    return {{"identifier", IdentifierText(result.identifier)}, {"id", result.id}, {"parentId", result.parentId},
            {"score", result.score}, {"stats", WriteStatistics(result.stats)}, {"rectangle", Write(result.rectangle)}};
}

Json WriteSelectorResult(const Search::CrossProcessSelectorResult& result) {
    Json json = {{"limit", result.limit}, {"results", Json::array()}, {"error", nullptr}, {"intermediate", Json::array()}};
    for (const auto& found : result.results) json["results"].push_back(WriteFound(found));
    if (result.error) {
        const auto info = result.error->ToErrorInfo();
        json["error"] = {{"id", result.error->GetErrorId()}, {"code", Write(info.code)}, {"parameters", NarrowText(info.parameters)}};
    }
    for (const auto& set : result.intermediate) {
        Json list = {{"limit", set.limit}, {"results", Json::array()}};
        for (const auto& found : set.results) list["results"].push_back(WriteFound(found));
        json["intermediate"].push_back(std::move(list));
    }
    return json;
}

template <class T>
Json Write(const T& value) {
    if constexpr (std::is_same_v<T, CString>) return NarrowText(value);
    else if constexpr (std::is_same_v<T, HWND>) return HandleText(value);
    else if constexpr (std::is_same_v<T, RECT>)
        return {{"left", value.left}, {"top", value.top}, {"right", value.right}, {"bottom", value.bottom}};
    else if constexpr (std::is_same_v<T, POINT>) return {{"x", value.x}, {"y", value.y}};
    else if constexpr (std::is_same_v<T, AAObjectIdentifier>) return IdentifierText(value);
    else if constexpr (std::is_same_v<T, CComVariant>) return WriteVariantValue(value);
    else if constexpr (std::is_same_v<T, Search::CrossProcessSelectorResult>) return WriteSelectorResult(value);
    else if constexpr (IsVector<T>::value) {
        Json list = Json::array();
        for (const auto& item : value) list.push_back(Write(item));
        return list;
    } else if constexpr (IsMap<T>::value) {
        Json object = Json::object();
        for (const auto& [key, item] : value) {
            if constexpr (std::is_same_v<typename T::key_type, HWND>) object[HandleText(key)] = Write(item);
            else object[NarrowText(key)] = Write(item);
        }
        return object;
    } else if constexpr (FieldRecord<T>) return WriteFields(value);
    else if constexpr (std::is_enum_v<T>) return static_cast<std::int64_t>(value);
    else return value;
}

// Fills what a person would otherwise have to look up first.
template <class Request>
void Prefill(Request& request, const RequestDefaults& defaults) {
    Request::Fields(request, [&](const char* name, auto& field) {
        using Field = std::remove_cvref_t<decltype(field)>;
        const std::string_view called = name;
        if constexpr (std::is_same_v<Field, std::uint32_t>) {
            if (called == "clientPid") field = defaults.clientPid;
            if (called == "timeoutMilliseconds") field = defaults.searchMilliseconds;
        } else if constexpr (std::is_same_v<Field, HWND>) {
            if (called == "window") field = defaults.window;
        } else if constexpr (std::is_same_v<Field, AAObjectIdentifier>) {
            if (called == "root") field = {defaults.window, 0, CHILDID_SELF, 0, defaults.clientPid, defaults.window};
        }
    });
}

std::string Lower(std::string text) {
    for (char& byte : text)
        if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
    return text;
}

}  // namespace

std::string RequestName(RequestId id) {
    const std::string text = ToText(id);
    const std::size_t colon = text.rfind(':');
    return colon == std::string::npos ? text : text.substr(colon + 1);
}

std::optional<RequestId> FindRequest(const std::string& name) {
    for (std::uint32_t number = 0; number < kRequestCount; ++number) {
        const RequestId id = static_cast<RequestId>(number);
        if (name == std::to_string(number) || Lower(RequestName(id)) == Lower(name)) return id;
    }
    return std::nullopt;
}

std::string ListRequests() {
    std::string list;
    for (std::uint32_t number = 0; number < kRequestCount; ++number) {
        const RequestId id = static_cast<RequestId>(number);
        std::string fields;
        WithRequestType(id, [&]<class Request>() {
            Request request;
            Request::Fields(request, [&](const char* name, auto& field) {
                fields += (fields.empty() ? "" : ", ") + std::string(name) + ": " + TypeText<std::remove_cvref_t<decltype(field)>>();
            });
        });
        list += (number < 10 ? " " : "") + std::to_string(number) + " " + RequestName(id) + " { " + fields + " }\n";
    }
    return list;
}

std::string ListRequestsAsJson() {
    Json list = Json::array();
    for (std::uint32_t number = 0; number < kRequestCount; ++number) {
        const RequestId id = static_cast<RequestId>(number);
        Json fields = Json::object();
        WithRequestType(id, [&]<class Request>() {
            Request request;
            Request::Fields(request, [&](const char* name, auto& field) { fields[name] = TypeText<std::remove_cvref_t<decltype(field)>>(); });
        });
        list.push_back({{"number", number}, {"name", RequestName(id)}, {"fields", std::move(fields)}});
    }
    return Json({{"requests", std::move(list)}}).dump(1) + "\n";
}

RequestBuffer EncodeRequestJson(RequestId id, const std::string& text, const RequestDefaults& defaults) {
    Json json = Json::object();
    if (!text.empty()) {
        try {
            json = Json::parse(text);
        } catch (const Json::exception& error) {
            // Behind the library's own code, which tells nobody anything.
            const std::string text = error.what();
            const std::size_t end = text.find("] ");
            Fail({}, "this is no JSON: " + (end == std::string::npos ? text : text.substr(end + 2)));
        }
    }
    RequestBuffer bytes;
    WithRequestType(id, [&]<class Request>() {
        Request request;
        Prefill(request, defaults);
        ReadFields(json, request, {}, defaults);
        try {
            bytes = EncodeRequest(request);
        } catch (const ArchiveException& exception) {
            Fail({}, exception.Text());
        }
    });
    return bytes;
}

std::string DecodeResponseJson(RequestId id, const RequestBuffer& response) {
    Json json;
    if (!response.empty()) {
        try {
            WithRequestType(id, [&]<class Request>() {
                if constexpr (!std::is_same_v<typename Request::Response, NoResponse>)
                    json = Write(DecodeResponse<typename Request::Response>(response));
            });
        } catch (const ArchiveException& exception) {
            throw CommandFailure(ExitCode::TargetProblem, "the answer can't be read: " + std::string(exception.Text()));
        } catch (const ComException&) {
            throw CommandFailure(ExitCode::TargetProblem, "the answer holds a variant that can't be read");
        }
    }
    return json.dump(1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace Zorvex::Controller
