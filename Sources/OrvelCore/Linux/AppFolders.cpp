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
using Variables = std::function<const char*(const char*)>;

const char* ownVariable(const char* name) {
    return std::getenv(name);
}

/// Returns an empty path if the variable is not set or its value is not an absolute path.
path absolutePath(const Variables& variables, const char* variable) {
    const char* const value = variables(variable);
    if (value == nullptr) return {};
    path result(value);
    return result.is_absolute() ? result : path();
}

path home(const Variables& variables) {
    if (auto fromEnvironment = absolutePath(variables, "HOME"); !fromEnvironment.empty())
        return fromEnvironment;
    passwd entry{};
    passwd* found = nullptr;
    std::vector<char> buffer(16384);  // sysconf suggests 1024, which long names exceed
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && path(found->pw_dir).is_absolute())
        return found->pw_dir;
    return "/";  // only root can write there, so a write fails with an error
}

path folder(const Variables& variables, const char* variable, const char* underHome) {
    auto base = absolutePath(variables, variable);
    if (base.empty()) base = home(variables) / underHome;
    return base / Brand::name;
}

}  // namespace

path dataFolder() {
    return dataFolder(ownVariable);
}

path dataFolder(const Variables& variables) {
    return folder(variables, "XDG_DATA_HOME", ".local/share");
}

path configFolder() {
    return folder(ownVariable, "XDG_CONFIG_HOME", ".config");
}

}  // namespace OrvelCore
