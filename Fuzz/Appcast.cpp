#include "OrvelUpdates/Appcast.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

#include <curl/curl.h>

using namespace OrvelUpdates;

namespace {

constexpr const char* trustedHost = "updates.example.com";

void require(bool holds) {
    if (!holds) std::abort();
}

/// The downloader must parse the same host as the rule of trust.
void compareWithDownloader(const URL& url) {
    if (url.scheme() != "https" || url.host() != trustedHost) return;
    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> theirs(curl_url(), curl_url_cleanup);
    if (curl_url_set(theirs.get(), CURLUPART_URL, url.text().c_str(), 0) != CURLUE_OK) return;
    char* host = nullptr;
    require(curl_url_get(theirs.get(), CURLUPART_HOST, &host, 0) == CURLUE_OK);
    require(std::string_view(host) == trustedHost);
    curl_free(host);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto items = AppcastParser::parse(text);
    if (!items) return 0;
    require(!items->empty());
    for (const auto& item : *items) {
        require(!item.shortVersion.empty());
        require(URL::parse(item.url.text()) == item.url);
        compareWithDownloader(item.url);
    }
    return 0;
}
