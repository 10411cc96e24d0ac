#include "OrvelUI/Symbols.h"

#include <map>
#include <string>

namespace OrvelUI {

namespace {

Symbol lockFill() {
    Path body;
    body.roundedRect({4.5, 10.5, 15, 11}, 2.8);
    Path shackle;
    shackle.move(8, 11).line(8, 7.5);
    shackle.curve({8, 5.0147}, {9.7909, 3}, {12, 3}).curve({14.2091, 3}, {16, 5.0147}, {16, 7.5});
    shackle.line(16, 11);
    return {{{body, 0}, {shackle, 2.2}}};
}

Symbol arrowRight() {
    Path path;
    path.move(4.5, 12).line(19, 12);
    path.move(13, 6).line(19, 12).line(13, 18);
    return {{{path, 2.2}}};
}

// The ridges of a fingertip: arches one inside the other, each open at the bottom.
Symbol touchID() {
    Path path;
    path.arc({12, 12}, 9.4, 9.4, 222, 318);
    path.arc({12, 12}, 9.4, 9.4, 160, 192);
    path.arc({12, 12}, 9.4, 9.4, 348, 372);
    path.move(4.9, 17.6).curve({5.6, 16}, {5.8, 14.2}, {5.8, 12});
    path.curve({5.8, 8.5761}, {8.5761, 5.8}, {12, 5.8});
    path.curve({15.4239, 5.8}, {18.2, 8.5761}, {18.2, 12});
    path.curve({18.2, 14.2}, {18, 16.2}, {17.5, 18});
    path.move(7.4, 20).curve({8.5, 17.8}, {9, 15.2}, {9, 12});
    path.curve({9, 10.3431}, {10.3431, 9}, {12, 9}).curve({13.6569, 9}, {15, 10.3431}, {15, 12});
    path.curve({15, 15.4}, {14.5, 18.4}, {13.5, 21});
    path.move(12, 12).curve({12, 15.4}, {11.5, 18.4}, {10.5, 21.2});
    return {{{path, 1.5}}};
}

Symbol appFill() {
    Path path;
    path.roundedRect({1, 1, 22, 22}, 5.6);
    return {{{path, 0}}};
}

}  // namespace

const Symbol& Symbol::named(std::string_view name) {
    static const std::map<std::string, Symbol, std::less<>> symbols{{"app.fill", appFill()},
                                                                    {"arrow.right", arrowRight()},
                                                                    {"lock.fill", lockFill()},
                                                                    {"touchid", touchID()}};
    static const Symbol none;
    const auto found = symbols.find(name);
    return found == symbols.end() ? none : found->second;
}

}  // namespace OrvelUI
