#include "OrvelSystem/CurrentThread.h"

#include <pthread.h>

namespace OrvelSystem {

void CurrentThread::describe(const std::string& name, Urgency) {
    constexpr std::size_t longest = 15;
    // Without a dot, `rfind` gives `npos`, and the name begins at 0.
    const auto shown = name.substr(name.rfind('.') + 1, longest);
    pthread_setname_np(pthread_self(), shown.c_str());
}

}  // namespace OrvelSystem
