#include "OrvelUI/Symbols.h"

#include <cmath>
#include <map>
#include <numbers>
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

// The ridges of a fingertip: nested arches that are open at the bottom.
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

/// Teeth around a ring with a hole in the middle.
Symbol gearshape() {
    Path outline;
    constexpr int teeth = 8;
    constexpr double turn = 2 * std::numbers::pi / teeth;
    const auto at = [](double radius, double angle) {
        return OrvelCore::Point{12 + radius * std::sin(angle), 12 - radius * std::cos(angle)};
    };
    for (int tooth = 0; tooth < teeth; ++tooth) {
        const double middle = tooth * turn;
        const OrvelCore::Point corners[] = {
            at(7.4, middle - 0.3 * turn), at(9.8, middle - 0.17 * turn),
            at(9.8, middle + 0.17 * turn), at(7.4, middle + 0.3 * turn)};
        for (const auto& corner : corners) {
            if (tooth == 0 && &corner == corners)
                outline.move(corner.x, corner.y);
            else
                outline.line(corner.x, corner.y);
        }
    }
    outline.close();
    Path hub;
    hub.ellipse({12, 12}, 3.2, 3.2);
    return {{{outline, 1.7}, {hub, 1.7}}};
}

Symbol lockSquare() {
    Path frame;
    frame.roundedRect({2.5, 2.5, 19, 19}, 5);
    Path body;
    body.roundedRect({7.5, 11.2, 9, 6.3}, 1.5);
    Path shackle;
    shackle.move(9.4, 11.4).line(9.4, 9.2);
    shackle.curve({9.4, 7.76}, {10.56, 6.6}, {12, 6.6})
        .curve({13.44, 6.6}, {14.6, 7.76}, {14.6, 9.2});
    shackle.line(14.6, 11.4);
    return {{{frame, 1.7}, {body, 0}, {shackle, 1.5}}};
}

Symbol eyeSlash() {
    Path lid;
    lid.move(2, 12).curve({4.6, 7.6}, {8, 5.4}, {12, 5.4}).curve({16, 5.4}, {19.4, 7.6}, {22, 12});
    lid.curve({19.4, 16.4}, {16, 18.6}, {12, 18.6}).curve({8, 18.6}, {4.6, 16.4}, {2, 12}).close();
    Path iris;
    iris.ellipse({12, 12}, 3.3, 3.3);
    Path slash;
    slash.move(4.2, 3.6).line(19.8, 20.4);
    return {{{lid, 1.8}, {iris, 1.8}, {slash, 1.9}}};
}

/// The eye as a solid shape, with a gap on both sides of the slash.
Symbol eyeSlashFill() {
    Path upper;
    upper.move(7.2, 5.9)
        .curve({8.7, 5.3}, {10.3, 5}, {12, 5})
        .curve({16.4, 5}, {20.1, 7.6}, {22.4, 12});
    upper.curve({21.5, 13.8}, {20.3, 15.3}, {18.9, 16.4}).close();
    Path lower;
    lower.move(5.1, 7.6).line(16.8, 18.1);
    lower.curve({15.3, 18.7}, {13.7, 19}, {12, 19}).curve({7.6, 19}, {3.9, 16.4}, {1.6, 12});
    lower.curve({2.5, 10.2}, {3.7, 8.7}, {5.1, 7.6}).close();
    Path slash;
    slash.move(4.4, 3.4).line(19.8, 20.6);
    return {{{upper, 0}, {lower, 0}, {slash, 1.9}}};
}

Symbol exclamationmarkLock() {
    Path body;
    body.roundedRect({4.5, 10.5, 15, 11}, 2.8);
    // Holes in the body.
    body.roundedRect({11.1, 12.3, 1.8, 4.6}, 0.9).ellipse({12, 18.9}, 1.1, 1.1);
    Path shackle;
    shackle.move(8, 11).line(8, 7.5);
    shackle.curve({8, 5.0147}, {9.7909, 3}, {12, 3}).curve({14.2091, 3}, {16, 5.0147}, {16, 7.5});
    shackle.line(16, 11);
    return {{{body, 0}, {shackle, 2.2}}};
}

Symbol hourglass() {
    Path frame;
    frame.move(5.5, 2.8).line(18.5, 2.8).move(5.5, 21.2).line(18.5, 21.2);
    Path glass;
    glass.move(7.2, 3).line(7.2, 6.2).curve({7.2, 9.4}, {11, 10}, {11, 12});
    glass.curve({11, 14}, {7.2, 14.6}, {7.2, 17.8}).line(7.2, 21);
    glass.move(16.8, 3).line(16.8, 6.2).curve({16.8, 9.4}, {13, 10}, {13, 12});
    glass.curve({13, 14}, {16.8, 14.6}, {16.8, 17.8}).line(16.8, 21);
    Path sand;
    sand.move(8.6, 19.8).curve({8.8, 17.4}, {10.6, 16.6}, {12, 15.6});
    sand.curve({13.4, 16.6}, {15.2, 17.4}, {15.4, 19.8}).close();
    return {{{frame, 2}, {glass, 1.7}, {sand, 0}}};
}

Symbol window() {
    Path frame;
    frame.roundedRect({2.5, 4, 19, 16}, 3.4);
    Path bar;
    bar.move(2.7, 9).line(21.3, 9);
    Path buttons;
    buttons.ellipse({5.8, 6.6}, 0.9, 0.9).ellipse({8.6, 6.6}, 0.9, 0.9);
    return {{{frame, 1.8}, {bar, 1.6}, {buttons, 0}}};
}

/// The corners and the middles of the sides of a rounded square.
Symbol squareDashed() {
    Path path;
    for (const double x : {7.5, 16.5}) {
        for (const double y : {7.5, 16.5}) {
            const double from = x < 12 ? (y < 12 ? 180 : 90) : (y < 12 ? 270 : 0);
            path.arc({x, y}, 4.5, 4.5, from, from + 90);
        }
    }
    path.move(10.6, 3).line(13.4, 3).move(10.6, 21).line(13.4, 21);
    path.move(3, 10.6).line(3, 13.4).move(21, 10.6).line(21, 13.4);
    return {{{path, 1.9}}};
}

Symbol chevronRight() {
    Path path;
    path.move(9, 5).line(16, 12).line(9, 19);
    return {{{path, 2.8}}};
}

Symbol circle() {
    Path path;
    path.ellipse({12, 12}, 9.2, 9.2);
    return {{{path, 1.7}}};
}

/// A disc with a cut-out check mark.
Symbol checkmarkCircleFill() {
    Path path;
    path.ellipse({12, 12}, 10.2, 10.2);
    path.move(6.5, 12.5).line(8, 11).line(10.7, 13.7).line(16.2, 7.6).line(17.7, 9);
    path.line(10.8, 16.7).close();
    return {{{path, 0}}};
}

Symbol arrowDown() {
    Path path;
    path.move(12, 4).line(12, 16.5);
    path.move(6.5, 11.2).line(12, 16.7).line(17.5, 11.2);
    path.move(5, 21).line(19, 21);
    return {{{path, 2}}};
}

Symbol lock() {
    Path body;
    body.roundedRect({4.8, 10.6, 14.4, 10.4}, 2.6);
    Path shackle;
    shackle.move(8, 10.4).line(8, 7.5);
    shackle.curve({8, 5.0147}, {9.7909, 3}, {12, 3}).curve({14.2091, 3}, {16, 5.0147}, {16, 7.5});
    shackle.line(16, 10.4);
    return {{{body, 1.8}, {shackle, 1.8}}};
}

Symbol drop() {
    Path path;
    path.move(12, 2.8).curve({14.6, 6.2}, {18.6, 10.4}, {18.6, 14.8});
    path.curve({18.6, 18.6}, {15.6, 21.2}, {12, 21.2}).curve({8.4, 21.2}, {5.4, 18.6}, {5.4, 14.8});
    path.curve({5.4, 10.4}, {9.4, 6.2}, {12, 2.8}).close();
    return {{{path, 1.8}}};
}

/// Four fingers and a thumb.
Symbol handRaised() {
    Path path;
    path.move(8, 13.2).line(8, 6.2).curve({8, 4.2}, {10.7, 4.2}, {10.7, 6.2}).line(10.7, 11.2);
    path.move(10.7, 6)
        .line(10.7, 4.4)
        .curve({10.7, 2.4}, {13.4, 2.4}, {13.4, 4.4})
        .line(13.4, 11.2);
    path.move(13.4, 5.8).curve({13.4, 3.8}, {16.1, 3.8}, {16.1, 5.8}).line(16.1, 11.8);
    path.move(16.1, 8.4).curve({16.1, 6.5}, {18.8, 6.5}, {18.8, 8.4}).line(18.8, 14.6);
    path.curve({18.8, 18.8}, {16.4, 21.4}, {12.8, 21.4});
    path.curve({9.4, 21.4}, {8, 19.6}, {6.8, 17.4}).line(4.5, 13.3);
    path.curve({3.6, 11.6}, {5.6, 10.4}, {6.7, 11.7}).line(8, 13.4);
    return {{{path, 1.7}}};
}

/// The looped square.
Symbol command() {
    Path path;
    path.roundedRect({8.6, 8.6, 6.8, 6.8}, 0);
    path.arc({5.9, 5.9}, 2.7, 2.7, 90, 360).line(8.6, 8.6).line(5.9, 8.6);
    path.arc({18.1, 5.9}, 2.7, 2.7, 180, 450).line(15.4, 8.6).line(15.4, 5.9);
    path.arc({18.1, 18.1}, 2.7, 2.7, 270, 540).line(15.4, 15.4).line(18.1, 15.4);
    path.arc({5.9, 18.1}, 2.7, 2.7, 0, 270).line(8.6, 15.4).line(8.6, 18.1);
    return {{{path, 1.8}}};
}

Symbol infoCircle() {
    Path circle;
    circle.ellipse({12, 12}, 9.2, 9.2);
    Path stem;
    stem.move(12, 11.2).line(12, 16.6);
    Path dot;
    dot.ellipse({12, 7.6}, 1.25, 1.25);
    return {{{circle, 1.7}, {stem, 1.9}, {dot, 0}}};
}

/// A disc with `sign` cut out.
Symbol discWithout(Path sign) {
    sign.ellipse({12, 12}, 10.2, 10.2);
    return {{{sign, 0}}};
}

Symbol minusCircleFill() {
    Path sign;
    sign.roundedRect({6.6, 11, 10.8, 2}, 1);
    return discWithout(sign);
}

Symbol xmarkCircleFill() {
    Path sign;
    sign.move(7.6, 9).line(9, 7.6).line(12, 10.6).line(15, 7.6).line(16.4, 9).line(13.4, 12);
    sign.line(16.4, 15).line(15, 16.4).line(12, 13.4).line(9, 16.4).line(7.6, 15).line(10.6, 12);
    sign.close();
    return discWithout(sign);
}

Symbol checkmark() {
    Path path;
    path.move(5, 12.6).line(10, 17.6).line(19.2, 6.8);
    return {{{path, 2.8}}};
}

Symbol exclamationmarkTriangle() {
    Path triangle;
    triangle.move(12, 3.6).line(21.4, 19.8).line(2.6, 19.8).close();
    Path stem;
    stem.move(12, 9.6).line(12, 14);
    Path dot;
    dot.ellipse({12, 16.9}, 1.15, 1.15);
    return {{{triangle, 1.9}, {stem, 1.9}, {dot, 0}}};
}

Symbol magnifyingglass() {
    Path path;
    path.ellipse({10.4, 10.4}, 6.6, 6.6);
    path.move(15.4, 15.4).line(20.6, 20.6);
    return {{{path, 2}}};
}

}  // namespace

const Symbol& Symbol::named(std::string_view name) {
    static const std::map<std::string, Symbol, std::less<>> symbols{
        {"app.fill", appFill()},
        {"arrow.down", arrowDown()},
        {"arrow.right", arrowRight()},
        {"checkmark", checkmark()},
        {"checkmark.circle.fill", checkmarkCircleFill()},
        {"chevron.right", chevronRight()},
        {"circle", circle()},
        {"exclamationmark.lock", exclamationmarkLock()},
        {"command", command()},
        {"drop", drop()},
        {"exclamationmark.triangle", exclamationmarkTriangle()},
        {"eye.slash", eyeSlash()},
        {"eye.slash.fill", eyeSlashFill()},
        {"gearshape", gearshape()},
        {"hourglass", hourglass()},
        {"hand.raised", handRaised()},
        {"info.circle", infoCircle()},
        {"lock", lock()},
        {"lock.fill", lockFill()},
        {"lock.square", lockSquare()},
        {"macwindow", window()},
        {"magnifyingglass", magnifyingglass()},
        {"minus.circle.fill", minusCircleFill()},
        {"square.dashed", squareDashed()},
        {"touchid", touchID()},
        {"xmark.circle.fill", xmarkCircleFill()}};
    static const Symbol none;
    const auto found = symbols.find(name);
    return found == symbols.end() ? none : found->second;
}

}  // namespace OrvelUI
