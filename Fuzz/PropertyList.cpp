#include "OrvelAuth/Directory/PropertyList.h"

#include <cstdint>
#include <cstdlib>
#include <span>

#include "OrvelAuth/AccountLockoutPolicy.h"

using namespace OrvelAuth;

// Policy data of an account in any property list format.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    const auto count = AccountLockoutPolicy::failedLoginCount(bytes);
    const auto entry = propertyListEntry(bytes, "failedLoginCount");
    if (count && !entry) std::abort();
    if (entry && entry->get<bool>() && count != (*entry->get<bool>() ? 1 : 0)) std::abort();
    return 0;
}
