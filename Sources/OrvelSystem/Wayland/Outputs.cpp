#include "OrvelSystem/Wayland/Outputs.h"

#include <QGuiApplication>

#include "OrvelSystem/Wayland/Compositor.h"

namespace OrvelSystem {

Outputs::Outputs() {
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &context_, [this](QScreen* screen) {
        follow(screen);
        onChanged();
    });
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &context_, [this] { onChanged(); });
    for (auto* const screen : QGuiApplication::screens()) follow(screen);
}

void Outputs::follow(QScreen* screen) {
    QObject::connect(screen, &QScreen::geometryChanged, &context_, [this] { onChanged(); });
}

std::vector<Outputs::Output> Outputs::list() {
    std::vector<Output> outputs;
    for (auto* const screen : QGuiApplication::screens()) {
        const QRect area = screen->geometry();
        if (area.isEmpty() || Compositor::output(*screen) == nullptr) continue;
        const auto next = static_cast<std::uint32_t>(numbers_.size() + 1);
        const auto number = numbers_.try_emplace(screen->name(), next).first->second;
        outputs.push_back(
            {number,
             {double(area.x()), double(area.y()), double(area.width()), double(area.height())},
             screen});
    }
    return outputs;
}

std::vector<OrvelCore::Rect> Outputs::frames() {
    std::vector<OrvelCore::Rect> frames;
    for (const auto& output : list()) frames.push_back(output.frame);
    return frames;
}

QScreen* Outputs::screen(std::uint32_t id) {
    for (const auto& output : list()) {
        if (output.id == id) return output.screen;
    }
    return nullptr;
}

}  // namespace OrvelSystem
