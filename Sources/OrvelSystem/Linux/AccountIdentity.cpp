#include "OrvelSystem/AccountIdentity.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <cstring>
#include <filesystem>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvelSystem {

namespace {

// In bytes. Any photograph fits; a larger file is not a portrait.
constexpr std::size_t maxFileSize = 8 << 20;
/// In pixels.
constexpr int maxSide = 8192;

struct Account {
    std::string userName;
    std::string comment;
    std::filesystem::path home;
};

const Account& account() {
    static const Account found = [] {
        std::vector<char> buffer(16384);
        passwd entry{};
        passwd* result = nullptr;
        getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &result);
        if (!result) return Account{std::to_string(getuid()), {}, {}};
        return Account{entry.pw_name, entry.pw_gecos ? entry.pw_gecos : "",
                       entry.pw_dir ? entry.pw_dir : ""};
    }();
    return found;
}

// Reads only a regular file of a reasonable size: a pipe or device at that path must not block the
// launch.
std::optional<QByteArray> readPlainFile(const std::filesystem::path& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) return {};
    std::optional<QByteArray> bytes;
    struct stat info {};
    if (fstat(file, &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0 &&
        static_cast<std::size_t>(info.st_size) <= maxFileSize) {
        bytes.emplace(static_cast<qsizetype>(info.st_size), '\0');
        qsizetype done = 0;
        ssize_t size = 0;
        while (done < bytes->size() &&
               (size = read(file, bytes->data() + done, bytes->size() - done)) > 0) {
            done += size;
        }
        bytes->truncate(done);
    }
    close(file);
    return bytes;
}

std::shared_ptr<const Picture> decode(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > maxSide || size.height() > maxSide) return {};
    const QSize limit(AccountIdentity::pictureSize, AccountIdentity::pictureSize);
    if (size.width() > limit.width() || size.height() > limit.height()) {
        reader.setScaledSize(size.scaled(limit, Qt::KeepAspectRatio));
    }
    const QImage image = reader.read().convertToFormat(QImage::Format_ARGB32);
    if (image.isNull()) return {};
    auto picture = std::make_shared<Picture>();
    picture->width = image.width();
    picture->height = image.height();
    picture->pixels.resize(static_cast<std::size_t>(image.width()) * image.height());
    const auto rowBytes = static_cast<std::size_t>(image.width()) * sizeof(std::uint32_t);
    for (int y = 0; y < image.height(); ++y) {
        std::memcpy(picture->pixels.data() + static_cast<std::size_t>(y) * image.width(),
                    image.constScanLine(y), rowBytes);
    }
    return picture;
}

}  // namespace

std::string AccountIdentity::userName() {
    return account().userName;
}

std::string AccountIdentity::fullName() {
    auto name = fullName(account().comment, account().userName);
    return name.empty() ? account().userName : name;
}

std::shared_ptr<const Picture> AccountIdentity::picture() {
    // AccountsService stores the icons that users choose in the first folder. We read the file
    // directly, because a request to the service would start it and delay the launch.
    const std::filesystem::path candidates[] = {
        std::filesystem::path("/var/lib/AccountsService/icons") / userName(),
        account().home / ".face",
        account().home / ".face.icon",
    };
    for (const auto& path : candidates) {
        auto bytes = readPlainFile(path);
        if (!bytes) continue;
        if (auto picture = decode(std::move(*bytes))) return picture;
    }
    return {};
}

}  // namespace OrvelSystem
