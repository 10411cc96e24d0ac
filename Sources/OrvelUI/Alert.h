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
    /// At most two. Return presses the first, or the last if the first is destructive. Escape
    /// presses the last.
    std::vector<Button> buttons;

    /// The first button confirms.
    static Alert uninstallQuestion();
    /// The last step after an uninstall that could not remove the program itself.
    static Alert leftInApplications();

    bool operator==(const Alert&) const = default;
};

}  // namespace OrvelUI
