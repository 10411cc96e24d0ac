#include "OrvelSystem/GuardService.h"

#include <fmt/format.h>

#include "OrvelCore/Brand.h"

namespace OrvelSystem {

std::error_code GuardService::start(bool renews) {
    if (!isEnabled()) {
        if (const auto error = registerService()) return error;
    }
    if (renews)
        renew();
    else
        kickstart();
    return {};
}

std::vector<std::string> GuardService::kickstartArguments(std::uint32_t uid) {
    return {"kickstart", fmt::format("gui/{}/{}", uid, OrvelCore::Brand::guardLabel)};
}

}  // namespace OrvelSystem
