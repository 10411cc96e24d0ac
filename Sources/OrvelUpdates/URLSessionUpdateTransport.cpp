#include "OrvelUpdates/URLSessionUpdateTransport.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <curl/curl.h>

#include "OrvelCore/Brand.h"

namespace OrvelUpdates {

namespace {

using Easy = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
using Multi = std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)>;

long statusOf(CURL* transfer) {
    long status = 0;
    curl_easy_getinfo(transfer, CURLINFO_RESPONSE_CODE, &status);
    return status;
}

bool isSuccess(long status) {
    return status >= 200 && status <= 299;
}

/// At least 1, since 0 means no limit to the library.
long milliseconds(double seconds) {
    return std::max(1L, std::lround(seconds * 1000));
}

/// Collects the body of a successful response, up to a limit. The body of an error or a redirect is
/// ignored, since its length is unrelated to the requested data.
struct Body {
    CURL* transfer;
    const UpdateRequest& request;
    std::string bytes;
    bool isTooLarge = false;

    static std::size_t receive(char* data, std::size_t, std::size_t count, void* self) {
        return static_cast<Body*>(self)->append({data, count}) ? count : CURL_WRITEFUNC_ERROR;
    }

  private:
    bool append(std::string_view piece) {
        if (!isSuccess(statusOf(transfer))) return true;
        isTooLarge = piece.size() > request.limit - bytes.size();
        if (isTooLarge) return false;
        // Exceptions must not pass through the C library.
        try {
            if (bytes.empty()) bytes.reserve(announcedSize());
            bytes += piece;
            request.received(bytes.size());
        } catch (const std::bad_alloc&) {
            return false;
        }
        return true;
    }

    /// The size that the server announces, but at most the limit. Reserving it avoids copies of a
    /// large package while it grows.
    std::size_t announcedSize() const {
        curl_off_t size = 0;
        curl_easy_getinfo(transfer, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &size);
        return std::min(static_cast<std::size_t>(std::max<curl_off_t>(size, 0)), request.limit);
    }
};

/// Runs one transfer on the calling thread; `nullopt` if it was stopped. It uses the multi
/// interface because the easy one cannot be interrupted while the library waits, for example for a
/// name to be resolved, and would delay the end of the program.
std::optional<CURLcode> perform(CURL* transfer, const OrvelSystem::StopToken& stop) {
    const Multi multi(curl_multi_init(), curl_multi_cleanup);
    if (!multi || curl_multi_add_handle(multi.get(), transfer) != CURLM_OK) return {};
    const OrvelSystem::StopCallback wake(stop, [&multi] { curl_multi_wakeup(multi.get()); });
    std::optional<CURLcode> result;
    int running = 1;
    while (running > 0 && !stop.isStopRequested()) {
        if (curl_multi_perform(multi.get(), &running) != CURLM_OK) break;
        // The library's own timers may end the wait sooner, so the limit need not be exact.
        if (running > 0) curl_multi_poll(multi.get(), nullptr, 0, 1000, nullptr);
    }
    int left = 0;
    while (const CURLMsg* const message = curl_multi_info_read(multi.get(), &left))
        if (message->msg == CURLMSG_DONE) result = message->data.result;
    curl_multi_remove_handle(multi.get(), transfer);
    return result;
}

/// Blocks SIGPIPE, so that a connection that breaks during a write does not end the program.
class BrokenPipesIgnored {
  public:
    BrokenPipesIgnored() {
        sigset_t brokenPipe;
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &brokenPipe, &before_);
    }
    BrokenPipesIgnored(const BrokenPipesIgnored&) = delete;
    BrokenPipesIgnored& operator=(const BrokenPipesIgnored&) = delete;
    ~BrokenPipesIgnored() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  private:
    sigset_t before_{};
};

}  // namespace

URLSessionUpdateTransport::URLSessionUpdateTransport() : URLSessionUpdateTransport(Options()) {}

URLSessionUpdateTransport::URLSessionUpdateTransport(Options options)
    : options_(std::move(options)) {
    static const CURLcode library = curl_global_init(CURL_GLOBAL_DEFAULT);
    (void)library;  // without the library every request fails
}

std::expected<UpdateReply, UpdateTransportError> URLSessionUpdateTransport::fetch(
    const UpdateRequest& request) {
    const std::unexpected unavailable(UpdateTransportError::unavailable);
    const Easy easy(curl_easy_init(), curl_easy_cleanup);
    if (!easy) return unavailable;
    CURL* const transfer = easy.get();
    Body body{.transfer = transfer, .request = request, .bytes = {}};
    bool isSet = true;
    const auto set = [&](CURLoption option, auto value) {
        isSet = curl_easy_setopt(transfer, option, value) == CURLE_OK && isSet;
    };
    set(CURLOPT_URL, request.url.text().c_str());
    set(CURLOPT_PROTOCOLS_STR, "https");
    set(CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
    set(CURLOPT_USERAGENT, OrvelCore::Brand::name.data());
    set(CURLOPT_CONNECTTIMEOUT, long{options_.connectTimeout});
    set(CURLOPT_LOW_SPEED_LIMIT, 1L);
    set(CURLOPT_LOW_SPEED_TIME, long{options_.stallTimeout});
    set(CURLOPT_TIMEOUT_MS, milliseconds(request.timeout));
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_WRITEFUNCTION, &Body::receive);
    set(CURLOPT_WRITEDATA, &body);
    if (!options_.authorities.empty()) {
        set(CURLOPT_CAINFO, options_.authorities.c_str());
        set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    }
    if (!isSet) return unavailable;

    const BrokenPipesIgnored ignored;
    const auto result = perform(transfer, request.stop);
    if (body.isTooLarge) return std::unexpected(UpdateTransportError::tooLarge);
    if (result != CURLE_OK) return unavailable;

    UpdateReply reply;
    const char* redirect = nullptr;
    curl_easy_getinfo(transfer, CURLINFO_REDIRECT_URL, &redirect);
    if (redirect != nullptr) {
        reply.redirect = URL::parse(redirect);
        if (!reply.redirect) return unavailable;
        return reply;
    }
    if (!isSuccess(statusOf(transfer))) return unavailable;
    reply.bytes = std::move(body.bytes);
    return reply;
}

}  // namespace OrvelUpdates
