// Any bytes, read as JSON. What is read must be written, and what was written must be read as the same value.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Common/include/JsonSerializer/JsonSerializer.h"
#include "Common/include/JsonSerializer/JsonText.h"
#include "Common/include/JsonSerializer/UnpackJson.h"

using namespace Zorvex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    JsonReadError error;
    const auto value = ReadJson(text, &error);
    if (!value) {
        if (error.code == JsonError::None || error.message.empty()) std::abort();
        return 0;
    }
    for (const JsonLayout layout : {JsonLayout::Compact, JsonLayout::Pretty}) {
        std::string written;
        if (!WriteJson(*value, layout, written)) std::abort();
        const auto again = ReadJson(written);
        if (!again || !(*again == *value)) std::abort();
    }
    // What refuses trailing commas reads no more than what allows them, and the same.
    const auto strict = ReadJson(text, nullptr, TrailingCommas::Refused);
    if (strict && !(*strict == *value)) std::abort();

    std::vector<std::wstring> texts;
    int number = 0;
    const JsonSerializer<std::vector<std::wstring>> textsSerializer;
    const JsonSerializer<int> numberSerializer;
    UnpackJson unpack;
    unpack.Add("texts", textsSerializer, texts).Add("number", numberSerializer, number);
    unpack.Deserialize(value.get());
    UnpackAnyJson any;
    any.Add(numberSerializer, number).Add(textsSerializer, texts);
    any.Deserialize(value.get());
    if (!(*value->DeepCopy() == *value)) std::abort();
    return 0;
}
