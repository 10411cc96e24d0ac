#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "OrvelUpdates/Appcast.h"

namespace OrvelUpdates {

/// An Ed25519 public key as 32 raw bytes.
struct PublicKey {
    std::array<unsigned char, 32> raw{};
    bool operator==(const PublicKey&) const = default;
};

/// Verifies that a package was signed with the private key. Any thread.
struct AppcastSignature {
    /// The key that the distributor has chosen for this build.
    static std::string_view publicKeyBase64();
    /// `nullopt` if `publicKeyBase64` is not a valid key; then no update verifies.
    static std::optional<PublicKey> publicKey();
    /// `nullopt` unless the text is strict Base64 of 32 bytes.
    static std::optional<PublicKey> publicKeyFromBase64(std::string_view text);

    /// Whether `archive` has the item's length, if that is known, and the item's signature is valid
    /// for all of its bytes. False without a key.
    static bool verify(std::string_view archive, const AppcastItem& item,
                       const std::optional<PublicKey>& publicKey);
};

}  // namespace OrvelUpdates
