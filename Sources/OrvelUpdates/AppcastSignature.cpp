#include "OrvelUpdates/AppcastSignature.h"

#include <algorithm>

#include <sodium.h>

#include "OrvelCore/Brand.h"

namespace OrvelUpdates {

namespace {

/// `nullopt` unless the text is the Base64 form of exactly `Size` bytes, with padding and no other
/// characters.
template <std::size_t Size>
std::optional<std::array<unsigned char, Size>> decode(std::string_view base64) {
    // The library also accepts '+' and '/' with their eighth bit set.
    if (std::ranges::any_of(base64, [](char c) { return static_cast<unsigned char>(c) > 0x7F; }))
        return {};
    std::array<unsigned char, Size> bytes{};
    std::size_t size = 0;
    if (sodium_base642bin(bytes.data(), bytes.size(), base64.data(), base64.size(), nullptr, &size,
                          nullptr, sodium_base64_VARIANT_ORIGINAL) != 0 ||
        size != Size)
        return {};
    return bytes;
}

}  // namespace

std::string_view AppcastSignature::publicKeyBase64() {
    return OrvelCore::Brand::updateKeyBase64;
}

std::optional<PublicKey> AppcastSignature::publicKey() {
    return publicKeyFromBase64(publicKeyBase64());
}

std::optional<PublicKey> AppcastSignature::publicKeyFromBase64(std::string_view text) {
    const auto raw = decode<crypto_sign_PUBLICKEYBYTES>(text);
    if (!raw) return {};
    return PublicKey{*raw};
}

bool AppcastSignature::verify(std::string_view archive, const AppcastItem& item,
                              const std::optional<PublicKey>& publicKey) {
    if (!publicKey || sodium_init() < 0) return false;
    const auto signature = decode<crypto_sign_BYTES>(item.edSignature);
    if (!signature) return false;
    if (item.length > 0 && static_cast<std::uint64_t>(item.length) != archive.size()) return false;
    return crypto_sign_verify_detached(signature->data(),
                                       reinterpret_cast<const unsigned char*>(archive.data()),
                                       archive.size(), publicKey->raw.data()) == 0;
}

}  // namespace OrvelUpdates
