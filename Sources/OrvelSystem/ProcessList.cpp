#include "OrvelSystem/ProcessList.h"

namespace OrvelSystem {

bool ProcessList::isRunning(const std::filesystem::path& executable) {
    return !running(executable).empty();
}

}  // namespace OrvelSystem
