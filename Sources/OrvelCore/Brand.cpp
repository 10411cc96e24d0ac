#include "OrvelCore/Brand.h"

namespace OrvelCore::Brand {

constinit const std::string_view siteURL = "https://" KARVO_SITE_HOST "/karvo/";
constinit const std::string_view appcastURL = "https://" KARVO_UPDATE_HOST "/karvo/appcast.xml";
constinit const std::string_view updateHost = KARVO_UPDATE_HOST;
constinit const std::string_view supportEmail = KARVO_SUPPORT_EMAIL;
constinit const std::string_view updateKeyBase64 = KARVO_UPDATE_KEY;
constinit const std::string_view version = KARVO_VERSION;
constinit const std::int64_t build = KARVO_BUILD;

}  // namespace OrvelCore::Brand
