#pragma once

#include <cstdlib>
#include <memory>

namespace OrvelSystem {

/// xcb replies and events are malloced.
struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using XReply = std::unique_ptr<T, FreeDeleter>;

}  // namespace OrvelSystem
