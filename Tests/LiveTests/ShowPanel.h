#pragma once

/// With this argument the test program shows a panel over the whole screen, and exits with 0 when
/// the panel is clicked. It is a separate process because Qt cannot start twice in one.
inline constexpr std::string_view showPanelArgument = "--show-panel";

int showPanel(int argc, char** argv);
