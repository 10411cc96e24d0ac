#pragma once

#include "Support/Prelude.h"

/// Started with this argument the test program shows a panel over the whole screen of its display,
/// and ends well when the panel is clicked: for servers on which Qt could not run twice.
inline constexpr std::string_view showPanelArgument = "--show-panel";

int showPanel(int argc, char** argv);
