#pragma once

#include "Support/Prelude.h"

namespace DesktopTest {

/// How long a test waits for what must come. It is far longer than anything should take, since two
/// loaded cores under a sanitizer are slow and no test asserts a time.
constexpr std::chrono::seconds patience{30};

/// Asks `holds` again and again until it is true; false when `limit` ran out first.
bool eventually(const std::function<bool()>& holds, std::chrono::milliseconds limit = patience);

/// Whether `holds` stays true for all of `period`: for what must not happen.
bool stays(const std::function<bool()>& holds, std::chrono::milliseconds period);

}  // namespace DesktopTest
