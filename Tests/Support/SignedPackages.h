#pragma once

#include <array>
#include <string>
#include <string_view>

#include <sodium.h>

#include "OrvelUpdates/AppcastSignature.h"

inline std::string base64(std::string_view bytes) {
    std::string text(sodium_base64_encoded_len(bytes.size(), sodium_base64_VARIANT_ORIGINAL), '\0');
    sodium_bin2base64(text.data(), text.size(),
                      reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(),
                      sodium_base64_VARIANT_ORIGINAL);
    text.pop_back();  // the terminator
    return text;
}

/// A key pair of a publisher.
class SigningKey {
  public:
    SigningKey() { crypto_sign_keypair(publicHalf.raw.data(), secret_.data()); }

    OrvelUpdates::PublicKey publicHalf;

    std::string rawSignature(std::string_view package) const {
        std::string signature(crypto_sign_BYTES, '\0');
        crypto_sign_detached(reinterpret_cast<unsigned char*>(signature.data()), nullptr,
                             reinterpret_cast<const unsigned char*>(package.data()), package.size(),
                             secret_.data());
        return signature;
    }
    std::string signature(std::string_view package) const { return base64(rawSignature(package)); }

  private:
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secret_{};
};

/// An item of a feed; each value is inserted into the text unchanged.
struct FeedItem {
    std::string build = "2";
    std::string url;
    std::string signature;
    std::string length;
    std::string version = "1.1";

    std::string text() const {
        return "<item><sparkle:shortVersionString>" + version +
               "</sparkle:shortVersionString><enclosure sparkle:version=\"" + build + "\" url=\"" +
               url + "\" sparkle:edSignature=\"" + signature + "\" length=\"" + length +
               "\"/></item>";
    }
};

inline std::string feed(const std::string& items) {
    return "<rss><channel><title>Updates</title>" + items + "</channel></rss>";
}

/// Returns `text` with one bit inverted.
inline std::string flipped(std::string text, std::size_t bit) {
    text[bit / 8] = static_cast<char>(text[bit / 8] ^ (1 << bit % 8));
    return text;
}
