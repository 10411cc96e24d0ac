// An app is identified by its desktop entry, whatever its process calls itself. Zero bytes separate
// the parts of the input: a control group, window properties, a command, and desktop entries.
#include "OrvelSystem/X11/AppIdentity.h"

#include <QString>
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <sstream>

#include "OrvelSystem/Linux/WellKnownApps.h"

using namespace OrvelSystem;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

std::string takePart(std::string_view& input, char end) {
    const auto at = input.find(end);
    const auto part = input.substr(0, at);
    input.remove_prefix(at == std::string_view::npos ? input.size() : at + 1);
    return std::string(part);
}

/// Converts text as the program does for window properties and files.
std::string takeText(std::string_view& input) {
    const auto bytes = takePart(input, '\0');
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())).toStdString();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    AppTraits traits;
    readControlGroup(takePart(input, '\0'), traits);
    require(!traits.sandbox.contains('/') && !traits.scope.contains('/'));
    traits.windowInstance = takeText(input);
    traits.windowClass = takeText(input);
    traits.toolkitID = takeText(input);

    std::string line = takeText(input);
    std::vector<std::string> command;
    for (std::string_view rest = line; !rest.empty();) command.push_back(takePart(rest, ' '));
    traits.executable = programOf(command);
    require(!traits.executable.contains('/'));

    std::vector<DesktopEntry> entries;
    while (!input.empty()) {
        DesktopEntry entry;
        entry.id = takeText(input);
        entry.name = takeText(input);
        entry.startupClass = takeText(input);
        entry.executable = takeText(input);
        entry.isShown = entry.name.size() % 2 == 0;
        if (!entry.id.empty()) entries.push_back(std::move(entry));
    }

    const auto identity = identifyApp(entries, traits);
    if (!identity.bundleID) {
        require(traits.executable.empty() && traits.windowClass.empty());
        return 0;
    }
    require(!identity.bundleID->empty());
    const bool isEntry = std::ranges::any_of(entries, [&](const DesktopEntry& entry) {
        return bundleIDForEntry(entry.id) == *identity.bundleID && entry.name == identity.name;
    });
    require(isEntry || identity == identifyApp({}, traits));
    // An entry that does not match must not change the result.
    entries.push_back(
        {.id = "\x01", .name = "other", .startupClass = "\x01", .executable = "\x01"});
    const auto among = identifyApp(entries, traits);
    require(among == identity || among.name == "other");
    return 0;
}
