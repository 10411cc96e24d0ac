#include "OrvelSystem/MainLoop.h"

namespace OrvelSystem {

MainLoop::~MainLoop() {
    for (const auto spawned = std::exchange(spawned_, {}); void* const frame : spawned)
        std::coroutine_handle<>::from_address(frame).destroy();
}

}  // namespace OrvelSystem
