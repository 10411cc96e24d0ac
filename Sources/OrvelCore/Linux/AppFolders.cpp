#include "OrvelCore/AppFolders.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "OrvelCore/Brand.h"

namespace OrvelCore {

namespace {

using std::filesystem::path;

/// Empty unless the variable holds an absolute path: any other counts as unset.
path absolutePath(const char* variable) {
    const char* const value = std::getenv(variable);
    if (value == nullptr) return {};
    path result(value);
    return result.is_absolute() ? result : path();
}

path home() {
    if (auto fromEnvironment = absolutePath("HOME"); !fromEnvironment.empty())
        return fromEnvironment;
    passwd entry{};
    passwd* found = nullptr;
    std::vector<char> buffer(16384);  // what sysconf advises is 1024, which long names overflow
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && path(found->pw_dir).is_absolute())
        return found->pw_dir;
    return "/";  // where nobody but root may write, so writing fails and says so
}

path folder(const char* variable, const char* underHome) {
    auto base = absolutePath(variable);
    if (base.empty()) base = home() / underHome;
    return base / Brand::name;
}

}  // namespace

path dataFolder() {
    return folder("XDG_DATA_HOME", ".local/share");
}

path configFolder() {
    return folder("XDG_CONFIG_HOME", ".config");
}

}  // namespace OrvelCore
