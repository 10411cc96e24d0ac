#include "OrvelBlur/Grain.h"

namespace OrvelBlur {

std::vector<std::uint8_t> Grain::pixels(int size, std::uint32_t from) {
    if (size <= 0) return {};
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size) *
                                    static_cast<std::size_t>(size));
    std::uint32_t x = from;
    for (auto& byte : bytes) {
        x = x * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(x >> 24U);
    }
    return bytes;
}

}  // namespace OrvelBlur
