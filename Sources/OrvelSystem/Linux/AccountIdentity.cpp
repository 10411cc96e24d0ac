#include "OrvelSystem/AccountIdentity.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <cstring>
#include <filesystem>
#include <vector>

#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include "OrvelCore/FileDescriptor.h"
#include "OrvelSystem/Linux/AccountComment.h"

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

std::string fullNameOf(std::string_view comment, std::string_view userName) {
    std::string name;
    for (const char c : comment.substr(0, comment.find(','))) {
        // By convention, an ampersand in the comment field stands for the capitalised login name.
        if (c != '&') {
            name += c;
            continue;
        }
        const auto start = name.size();
        name += userName;
        if (start < name.size() && name[start] >= 'a' && name[start] <= 'z') {
            name[start] = static_cast<char>(name[start] - 'a' + 'A');
        }
    }
    return name.find_first_not_of(' ') == std::string::npos ? std::string() : name;
}

std::string AccountIdentity::userName() {
    return account().userName;
}

std::string AccountIdentity::fullName() {
    auto name = fullNameOf(account().comment, account().userName);
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
        // A pipe or device at that path must not block the launch.
        const OrvelCore::FileDescriptor file(
            open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
        if (!file.isOpen()) continue;
        const auto bytes = file.readRegularFile(maxFileSize);
        if (!bytes) continue;
        if (auto picture = decode(QByteArray::fromStdString(*bytes))) return picture;
    }
    return {};
}

}  // namespace OrvelSystem
