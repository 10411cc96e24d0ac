#pragma once

#include <string>
#include <string_view>

namespace OrvelSystem {

/// Extracts the full name from the comment field of an entry in the account database. `userName` is
/// the login name. Returns an empty string if the field has no name.
std::string fullNameOf(std::string_view comment, std::string_view userName);

}  // namespace OrvelSystem
