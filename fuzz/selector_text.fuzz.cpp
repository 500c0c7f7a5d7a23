// The text form of selectors: any bytes, as units of 8 or 16 bits. What is accepted must read back as it is written.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Controller/CommandLine/SelectorText.h"
#include "RuntimeCore/Selectors/Values/ISelectorTag.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Zorvex::Controller;
    if (size == 0) return 0;
    std::wstring text;
    const bool wide = data[0] & 1;
    for (std::size_t i = 1; i + wide < size; i += 1u + wide)
        text += static_cast<wchar_t>(data[i] | (wide ? data[i + 1] << 8 : 0));
    Selector selector;
    SelectorTextError error;
    if (!ParseSelector(text, selector, error)) {
        if (error.column == 0 || error.message.empty()) std::abort();
        error.Show(text);
        return 0;
    }
    Selector again;
    if (!ParseSelector(WriteSelector(selector), again, error) || again.tags.size() != selector.tags.size()) std::abort();
    return 0;
}
