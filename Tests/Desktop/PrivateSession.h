#pragma once

#include "Process.h"

namespace DesktopTest {

/// What a session in `folder` starts its programs with: a home, a runtime folder and addresses of
/// buses of its own, which may not be there, and no display. Makes the folders.
Environment privateEnvironment(const std::filesystem::path& folder);
/// Where the names of the sanitizers' reports begin. They go to files, since not every process
/// keeps its standard error.
std::string sanitizerReports(const std::filesystem::path& folder);
/// Fails the test for every report.
void checkSanitizers(const std::filesystem::path& folder);

/// The PAM of a session in `folder` answers by this script, which `pam/ScriptedPam.cpp` explains.
void scriptPam(const std::filesystem::path& folder, const std::string& script);
/// `environment` with that PAM.
Environment withPam(Environment environment, const std::filesystem::path& folder);

}  // namespace DesktopTest
