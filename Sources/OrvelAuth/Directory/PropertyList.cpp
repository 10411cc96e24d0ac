#include "OrvelAuth/Directory/PropertyList.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include <plist/plist.h>

namespace OrvelAuth {

using OrvelSystem::PropertyValue;

std::optional<PropertyValue> propertyListEntry(std::span<const std::byte> data, const char* key) {
    if (data.empty() || data.size() > std::numeric_limits<std::uint32_t>::max()) return {};
    const auto* const text = reinterpret_cast<const char*>(data.data());
    const auto size = static_cast<std::uint32_t>(data.size());
    plist_t list = nullptr;
    // plist_from_memory detects the format by itself, but takes more arguments since version 2.3.
    if (plist_is_binary(text, size))
        plist_from_bin(text, size, &list);
    else
        plist_from_xml(text, size, &list);
    const std::unique_ptr<void, decltype(&plist_free)> owned(list, plist_free);
    if (!list || plist_get_node_type(list) != PLIST_DICT) return {};
    // Do not examine other entries: the library terminates the program for some keys.
    const plist_t entry = plist_dict_get_item(list, key);
    switch (plist_get_node_type(entry)) {
        case PLIST_BOOLEAN: {
            std::uint8_t value = 0;
            plist_get_bool_val(entry, &value);
            return value != 0;
        }
        case PLIST_UINT: {
            // The library returns negative numbers in two's complement.
            std::uint64_t value = 0;
            plist_get_uint_val(entry, &value);
            return static_cast<std::int64_t>(value);
        }
        case PLIST_REAL: {
            double value = 0;
            plist_get_real_val(entry, &value);
            return value;
        }
        case PLIST_STRING: {
            std::uint64_t length = 0;
            const char* const string = plist_get_string_ptr(entry, &length);
            return string ? std::string(string, length) : std::string();
        }
        default:
            return {};
    }
}

}  // namespace OrvelAuth
