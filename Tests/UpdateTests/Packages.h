#pragma once

/// Returns the bytes of a Debian package whose program consists of 300 000 zero bytes.
std::string makePackage(const std::string& version, const std::string& name = "karvo");
