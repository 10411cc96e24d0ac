#include "OrvelAuth/Linux/PAMService.h"

#include <algorithm>

#include "OrvelCore/Brand.h"

namespace OrvelAuth {

std::string pamService(const std::vector<std::filesystem::path>& folders) {
    const std::string own(OrvelCore::Brand::slug);
    const bool installed = std::ranges::any_of(folders, [&](const auto& folder) {
        std::error_code error;
        return std::filesystem::exists(folder / own, error);
    });
    return installed ? own : "login";
}

}  // namespace OrvelAuth
