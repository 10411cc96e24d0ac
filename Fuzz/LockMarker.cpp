#include "OrvelCore/LockMarker.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace OrvelCore;

// A marker that was read stays the same when it is written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view json(reinterpret_cast<const char*>(data), size);
    const auto marker = LockMarker::decode(json);
    if (!marker) return 0;
    const auto again = LockMarker::decode(marker->encoded());
    if (!again || again->bootSession != marker->bootSession || again->failures != marker->failures)
        std::abort();
    return 0;
}
