#pragma once

#include <optional>
#include <string>

namespace OrvelApp {

/// What keeps this program from working in the session that it was started in, as one sentence
/// for the user; nothing when it can. Asked before Qt starts, which would abort.
std::optional<std::string> obstacleInSession();

}  // namespace OrvelApp
