#pragma once

namespace DesktopTest {

/// How long a test waits for something that must happen. It is far longer than anything should
/// take, because a machine with two loaded cores is slow under a sanitizer and no test asserts a
/// time.
constexpr std::chrono::seconds patience{30};

/// Calls `holds` repeatedly until it returns true. Returns false if `limit` expires first.
bool eventually(const std::function<bool()>& holds, std::chrono::milliseconds limit = patience);

/// Returns whether `holds` stays true for all of `period`; used for things that must not happen.
bool stays(const std::function<bool()>& holds, std::chrono::milliseconds period);

}  // namespace DesktopTest
