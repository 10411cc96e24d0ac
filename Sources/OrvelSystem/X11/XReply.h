#pragma once

#include <cstdlib>
#include <memory>

namespace OrvelSystem {

/// xcb allocates replies and events with `malloc`.
struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using XReply = std::unique_ptr<T, FreeDeleter>;

}  // namespace OrvelSystem
