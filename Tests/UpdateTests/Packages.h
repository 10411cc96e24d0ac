#pragma once

#include "Support/Prelude.h"

/// The bytes of a Debian package whose program is 300 000 bytes of nothing.
std::string makePackage(const std::string& version, const std::string& name = "karvo");
