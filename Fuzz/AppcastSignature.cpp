#include "OrvelUpdates/AppcastSignature.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <sodium.h>

using namespace OrvelUpdates;

namespace {

struct Key {
    PublicKey publicHalf;
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secret{};
    Key() {
        if (sodium_init() < 0) std::abort();
        constexpr std::array<unsigned char, crypto_sign_SEEDBYTES> seed{};
        crypto_sign_seed_keypair(publicHalf.raw.data(), secret.data(), seed.data());
    }
};

std::string signature(const Key& key, std::string_view package) {
    std::array<unsigned char, crypto_sign_BYTES> raw{};
    crypto_sign_detached(raw.data(), nullptr,
                         reinterpret_cast<const unsigned char*>(package.data()), package.size(),
                         key.secret.data());
    std::string text(sodium_base64_ENCODED_LEN(raw.size(), sodium_base64_VARIANT_ORIGINAL), '\0');
    sodium_bin2base64(text.data(), text.size(), raw.data(), raw.size(),
                      sodium_base64_VARIANT_ORIGINAL);
    text.pop_back();
    return text;
}

}  // namespace

// The first line of the input is a signature, the rest is a package. If the line starts with "=",
// it instead describes changes to the correct signature, as pairs of a position and a byte to XOR
// there. Random input alone would never come close to a valid signature.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Key key;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto line = input.substr(0, input.find('\n'));
    const auto package = input.substr(std::min(line.size() + 1, input.size()));
    const auto right = signature(key, package);

    AppcastItem item{.edSignature = std::string(line)};
    if (line.starts_with('=')) {
        item.edSignature = right;
        for (std::size_t i = 1; i + 1 < line.size(); i += 2) {
            char& byte =
                item.edSignature[static_cast<unsigned char>(line[i]) % item.edSignature.size()];
            byte = static_cast<char>(byte ^ line[i + 1]);
        }
    }
    // Only one text is accepted as the signature.
    if (AppcastSignature::verify(package, item, key.publicHalf) != (item.edSignature == right))
        std::abort();
    return 0;
}
