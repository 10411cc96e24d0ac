#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "OrvelUpdates/Appcast.h"

namespace OrvelUpdates {

/// The public half of an Ed25519 key pair, as its 32 raw bytes.
struct PublicKey {
    std::array<unsigned char, 32> raw{};
    bool operator==(const PublicKey&) const = default;
};

/// Says whether a package is what the holder of the private key has signed. Any thread.
struct AppcastSignature {
    /// Chosen by whoever ships the program.
    static std::string_view publicKeyBase64();
    /// Nothing when the text above is no key; then no update verifies.
    static std::optional<PublicKey> publicKey();
    /// Nothing unless the text is strict base64 of 32 bytes.
    static std::optional<PublicKey> publicKeyFromBase64(std::string_view text);

    /// Whether `archive` has the item's length, if that is known, and the item's signature over all
    /// of its bytes. False without a key.
    static bool verify(std::string_view archive, const AppcastItem& item,
                       const std::optional<PublicKey>& publicKey);
};

}  // namespace OrvelUpdates
