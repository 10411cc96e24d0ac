#include "OrvelAuth/PropertyList.h"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>

#include <plist/plist.h>

namespace OrvelAuth {

namespace {

using OrvelSystem::PropertyValue;

// Lists that people write are a few levels deep.
constexpr int maxDepth = 64;

PropertyValue convert(plist_t node, int depth);

PropertyValue array(plist_t node, int depth) {
    PropertyValue::Array items;
    const auto count = plist_array_get_size(node);
    for (std::uint32_t i = 0; i < count; ++i) {
        items.push_back(convert(plist_array_get_item(node, i), depth + 1));
    }
    return items;
}

PropertyValue dictionary(plist_t node, int depth) {
    PropertyValue::Dictionary entries;
    plist_dict_iter at = nullptr;
    plist_dict_new_iter(node, &at);
    const std::unique_ptr<void, decltype(&std::free)> owned(at, std::free);
    for (;;) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, at, &key, &item);
        const std::unique_ptr<char, decltype(&std::free)> ownedKey(key, std::free);
        if (!key || !item) break;
        entries.insert_or_assign(key, convert(item, depth + 1));
    }
    return entries;
}

PropertyValue convert(plist_t node, int depth) {
    if (depth > maxDepth) return {};
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            std::uint8_t value = 0;
            plist_get_bool_val(node, &value);
            return value != 0;
        }
        case PLIST_UINT: {
            // The library hands out negative numbers in two's complement.
            std::uint64_t value = 0;
            plist_get_uint_val(node, &value);
            return static_cast<std::int64_t>(value);
        }
        case PLIST_REAL: {
            double value = 0;
            plist_get_real_val(node, &value);
            return value;
        }
        case PLIST_STRING: {
            std::uint64_t size = 0;
            const char* const text = plist_get_string_ptr(node, &size);
            return text ? std::string(text, size) : std::string();
        }
        case PLIST_DATA: {
            std::uint64_t size = 0;
            const auto* const bytes =
                reinterpret_cast<const std::byte*>(plist_get_data_ptr(node, &size));
            return bytes ? PropertyValue::Data(bytes, bytes + size) : PropertyValue::Data();
        }
        case PLIST_ARRAY:
            return array(node, depth);
        case PLIST_DICT:
            return dictionary(node, depth);
        default:
            return {};
    }
}

}  // namespace

std::optional<PropertyValue> parsePropertyList(std::span<const std::byte> data) {
    if (data.empty() || data.size() > std::numeric_limits<std::uint32_t>::max()) return {};
    plist_t list = nullptr;
    plist_from_memory(reinterpret_cast<const char*>(data.data()),
                      static_cast<std::uint32_t>(data.size()), &list);
    if (!list) return {};
    const std::unique_ptr<void, decltype(&plist_free)> owned(list, plist_free);
    return convert(list, 0);
}

}  // namespace OrvelAuth
