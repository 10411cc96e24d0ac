#include "OrvelApp/Linux/InstanceLock.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <unistd.h>

#include "OrvelCore/Brand.h"

namespace OrvelApp {

InstanceLock::InstanceLock(std::string_view display) {
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    if (folder == nullptr || *folder != '/') return;
    std::string name(display);
    std::replace(name.begin(), name.end(), '/', '_');
    const auto path = fmt::format("{}/{}{}.lock", folder, OrvelCore::Brand::slug, name);
    file_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file_ < 0) return;
    isOurs_ = flock(file_, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

InstanceLock::~InstanceLock() {
    if (file_ >= 0) close(file_);
}

}  // namespace OrvelApp
