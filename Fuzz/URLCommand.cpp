#include "OrvelCore/URLCommand.h"

#include <cstdint>
#include <cstdlib>
#include <string>

using namespace OrvelCore;

// The case of the scheme and host does not change a URL's meaning; other schemes have none.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view url(reinterpret_cast<const char*>(data), size);
    const auto command = URLCommands::parse(url, "karvo");
    if (!command) return 0;
    const auto colon = url.find(':');
    if (colon == std::string_view::npos) std::abort();
    std::string shouted(url);
    for (std::size_t i = 0; i < colon; ++i)
        shouted[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(shouted[i])));
    if (URLCommands::parse(shouted, "karvo") != command) std::abort();
    if (URLCommands::parse(url, "other")) std::abort();
    return 0;
}
