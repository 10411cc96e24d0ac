#pragma once

#include <string>
#include <vector>

namespace OrvelUI {

/// A question or a notice that waits for an answer.
struct Alert {
    struct Button {
        std::string title;
        bool destructive = false;
        bool operator==(const Button&) const = default;
    };

    std::string message;
    std::string informative;
    /// Two at most. Return presses the first, or the last where the first is destructive. Escape
    /// presses the last.
    std::vector<Button> buttons;

    /// Its first button goes ahead.
    static Alert uninstallQuestion();
    /// What is left to do after an uninstall that could not take the program itself.
    static Alert leftInApplications();

    bool operator==(const Alert&) const = default;
};

}  // namespace OrvelUI
