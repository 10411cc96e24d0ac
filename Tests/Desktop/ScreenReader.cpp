#include "ScreenReader.h"

#include "Eventually.h"

namespace DesktopTest {

namespace {

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
    return parts;
}

}  // namespace

ScreenReader::ScreenReader(Desktop& desktop) : desktop_(desktop) {
    desktop.environment()["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1";
    desktop.start({"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"}, "accessibility");
    if (!eventually([&] { return desktop.sessionBus().hasOwner("org.a11y.Bus"); }))
        throw std::runtime_error("no accessibility bus");
}

std::vector<Accessible> ScreenReader::read() {
    const auto result = run({"/usr/bin/python3", KARVO_DESKTOP_FOLDER "/accessible.py", "Karvo"},
                            desktop_.environment());
    std::vector<Accessible> elements;
    for (const auto& line : split(result.output, '\n')) {
        const auto fields = split(line, '\t');
        if (fields.size() != 9) continue;
        const auto number = [&fields](std::size_t i) { return std::stoi(fields[i]); };
        const auto states = split(fields[3], ',');
        elements.push_back({.role = fields[0],
                            .name = fields[1],
                            .states = {states.begin(), states.end()},
                            .area = {number(5), number(6), number(7), number(8)}});
    }
    return elements;
}

std::optional<Accessible> ScreenReader::find(std::string_view name, std::string_view role) {
    const auto elements = read();
    const auto found = std::ranges::find_if(elements, [&](const Accessible& element) {
        return element.name == name && (role.empty() || element.role == role);
    });
    return found == elements.end() ? std::nullopt : std::optional(*found);
}

Accessible ScreenReader::wait(std::string_view name, std::string_view role) {
    std::optional<Accessible> element;
    if (!eventually([&] { return (element = find(name, role)).has_value(); }))
        throw std::runtime_error("no element " + std::string(name));
    return *element;
}

void ScreenReader::click(std::string_view name, std::string_view role) {
    auto& screen = desktop_.screen();
    for (int tries = 0;; ++tries) {
        const Area area = wait(name, role).area;
        const Area window = visiblePart();
        const int y = area.y + area.height / 2;
        if (tries == 8 || (y > window.y && y < window.y + window.height)) {
            screen.click(area.x + area.width / 2, y);
            return;
        }
        screen.movePointer(window.x + window.width * 2 / 3, window.y + window.height / 2);
        screen.scrollDown(3);
    }
}

Area ScreenReader::visiblePart() {
    for (const auto& element : read())
        if (element.role != "application" && !element.name.empty()) return element.area.inset(12);
    return {};
}

std::string ScreenReader::focused() {
    std::string name;
    for (const auto& element : read())
        if (element.is("focused")) name = element.name;
    return name;
}

}  // namespace DesktopTest
