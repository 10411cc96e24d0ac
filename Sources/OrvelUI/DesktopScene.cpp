#include "OrvelUI/DesktopScene.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace OrvelUI {

namespace {

using OrvelCore::Rect;

struct Painter {
    DesktopScene scene;

    void box(const Rect& rect, double radius, Palette::Ink ink) {
        Path path;
        path.roundedRect(rect, radius);
        scene.shapes.push_back({std::move(path), ink});
    }
    void dot(double x, double y, double radius, Palette::Ink ink) {
        Path path;
        path.ellipse({x, y}, radius, radius);
        scene.shapes.push_back({std::move(path), ink});
    }
    void window(const Rect& rect, Palette::Value frame, Palette::Value bar) {
        box({rect.x - 0.6, rect.y - 0.2, rect.width + 1.2, rect.height + 1.6}, 3.4,
            {Palette::island, 0.25});
        box(rect, 3, {frame});
        box({rect.x, rect.y, rect.width, 6}, 3, {bar});
        box({rect.x, rect.y + 3, rect.width, 3.2}, 0, {bar});
        for (int i = 0; i < 3; ++i)
            dot(rect.x + 4 + 3.2 * i, rect.y + 3, 0.95, {Palette::ink3Light, 0.8});
    }
    void line(double x, double y, double width, Palette::Ink ink) { box({x, y, width, 2}, 1, ink); }
};

DesktopScene drawn() {
    Painter painter;
    painter.dot(132, 24, 30, {Palette::accentDark, 0.22});
    painter.dot(24, 92, 34, {Palette::inkLight, 0.16});

    // A letter, with a conversation in front of it.
    painter.window({16, 16, 82, 62}, Palette::surfaceLight, 0xE3E6EB);
    painter.line(22, 27, 34, {Palette::inkLight, 0.85});
    const double lengths[] = {68, 62, 66, 44, 0, 68, 58, 64, 30};
    for (int i = 0; i < 9; ++i)
        if (lengths[i] > 0) painter.line(22, 33 + 4.6 * i, lengths[i], {Palette::ink3Light, 0.6});

    painter.window({82, 34, 64, 50}, Palette::surfaceDark, 0x272B33);
    painter.box({87, 45, 32, 8}, 3.5, {Palette::lockInk, 0.2});
    painter.box({109, 56, 32, 8}, 3.5, {Palette::accentDark});
    painter.box({87, 67, 24, 8}, 3.5, {Palette::lockInk, 0.2});
    painter.line(90, 48, 24, {Palette::lockInk, 0.75});
    painter.line(112, 59, 25, {Palette::inkLight, 0.75});
    painter.line(90, 70, 16, {Palette::lockInk, 0.75});

    painter.box({0, 0, 160, 4}, 0, {Palette::island, 0.35});
    return painter.scene;
}

double eased(double from, double to, double seconds) {
    const double t = std::clamp((seconds - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

}  // namespace

const DesktopScene& DesktopScene::standard() {
    static const DesktopScene scene = drawn();
    return scene;
}

SceneCard SceneCard::of(const SceneCover& cover) {
    SceneCard card;
    Painter painter;
    const double width = cover.speaks ? 74 : 48;
    const double height = cover.speaks ? 30 : 26;
    const double left = (DesktopScene::size.width - width) / 2;
    const double right = left + width;
    painter.box({left, -6, width, height + 6}, 6, {Palette::island});
    if (cover.speaks) {
        card.marks = {
            {{.name = "lock.fill", .size = 9, .ink = {}}, {left + 11, 9}},
            {{.name = "touchid", .size = 10, .ink = {Palette::accentDark}}, {right - 9, 9}}};
        card.text = {{.text = "Locked",
                      .tail = {},
                      .size = 7,
                      .weight = LabelContent::Weight::semibold,
                      .ink = {}},
                     {left + 19, 3, 40, 12}};
        painter.box({left + 6, 18, width - 12, 7}, 3, {Palette::lockInk, 0.16});
    } else {
        if (cover.showsClock) painter.box({left + 5, 3, 9, 2.4}, 1, {Palette::lockInk, 0.8});
        card.marks = {{{.name = "lock.fill", .size = 5, .ink = {}}, {right - 6.5, 4.2}}};
        painter.dot(left + 8, 12, 3, {Palette::lockInk, 0.5});
        painter.box({left + 14, 11, 22, 2.2}, 1, {Palette::lockInk, 0.5});
        painter.box({left + 5, 17.5, width - 10, 5.5}, 2.4, {Palette::lockInk, 0.2});
    }
    card.shapes = std::move(painter.scene.shapes);
    return card;
}

std::vector<OrvelCore::Size> blurSizes(const OrvelCore::Size& size, double radius) {
    std::vector<OrvelCore::Size> sizes;
    if (radius < 0.5) return sizes;
    const double steps = std::log2(radius) + 0.6;
    const auto shrink = [&](double times) {
        sizes.push_back({std::max(2.0, std::floor(size.width / std::exp2(times))),
                         std::max(2.0, std::floor(size.height / std::exp2(times)))});
    };
    for (double done = 1; done < steps; ++done) shrink(done);
    shrink(steps);
    for (double left = std::floor(steps); left > 0; --left) shrink(left);
    sizes.push_back(size);
    return sizes;
}

LockingPicture LockingPicture::at(double seconds) {
    const double now = std::fmod(seconds, period);
    // Locked until the user returns; the loop begins and ends with the plain desktop.
    const double away = 1 - eased(4.2, 4.6, now);
    return {.blur = eased(0.9, 1.3, now) * away, .card = eased(1.1, 1.5, now) * away};
}

}  // namespace OrvelUI
