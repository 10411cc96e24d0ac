#include "OrvelSystem/GuardService.h"

#include <fmt/format.h>

#include "OrvelCore/Brand.h"

namespace OrvelSystem {

std::vector<std::string> GuardService::kickstartArguments(std::uint32_t uid) {
    return {"kickstart", fmt::format("gui/{}/{}", uid, OrvelCore::Brand::guardLabel)};
}

}  // namespace OrvelSystem
