#include "OrvelSystem/BootSession.h"

#include <fstream>

namespace OrvelSystem {

std::string BootSession::current() {
    std::ifstream file("/proc/sys/kernel/random/boot_id");
    std::string id;
    return file >> id ? id : "unknown";
}

}  // namespace OrvelSystem
