#include <cstdint>
#include <cstdlib>
#include <string>

#include "OrvelCore/Shortcut.h"
#include "OrvelCore/Text.h"

using namespace OrvelCore;

// A shortcut that was read is stored in the same form again, and the text functions accept any
// bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto shortcut = Shortcut::fromStored(text)) {
        if (Shortcut::fromStored(shortcut->stored()) != shortcut) std::abort();
        if (shortcut->keycaps().empty()) std::abort();
    }
    const auto count = Text::characterCount(text);
    if (Text::characterCount(Text::firstCharacters(text, count / 2)) > count) std::abort();
    if (Text::trim(Text::trim(text)) != Text::trim(text)) std::abort();
    if (Text::lastCharacterStart(text) > text.size()) std::abort();
    return 0;
}
