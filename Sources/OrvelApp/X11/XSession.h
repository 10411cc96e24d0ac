#pragma once

#include <optional>
#include <string>

namespace OrvelApp {

/// What prevents this program from working in its session, as one sentence for the user; `nullopt`
/// if nothing does. Call it before Qt starts, because Qt would abort.
std::optional<std::string> obstacleInSession();

}  // namespace OrvelApp
