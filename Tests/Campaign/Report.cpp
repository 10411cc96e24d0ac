#include "Report.h"

namespace Campaign {

std::string Report::lines() const {
    std::string text;
    for (const auto& [name, count] : faults) text += fmt::format("fault {} {}\n", name, count);
    for (const auto& [name, count] : counts) text += fmt::format("count {} {}\n", name, count);
    for (const auto& [name, values] : times)
        for (const double value : values) text += fmt::format("time {} {}\n", name, value);
    for (const auto& [kind, seen] : violations)
        for (const auto& what : seen) text += fmt::format("violation {} {}\n", kind, what);
    return text;
}

void Report::add(const std::string& lines, const std::string& life) {
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        std::istringstream words(line);
        std::string type, name, rest;
        words >> type >> name >> std::ws;
        std::getline(words, rest);
        if (type == "fault") faults[name] += std::stoi(rest);
        if (type == "count") counts[name] += std::stoi(rest);
        if (type == "time") times[name].push_back(std::stod(rest));
        if (type == "violation") violations[name].push_back(life + ": " + rest);
    }
}

std::string Report::summary() const {
    std::string text;
    const auto table = [&text](const char* title, const std::map<std::string, int>& entries) {
        int total = 0;
        for (const auto& [name, count] : entries) total += count;
        text += fmt::format("{}: {}\n", title, total);
        for (const auto& [name, count] : entries) text += fmt::format("  {:28} {}\n", name, count);
    };
    table("Faults", faults);
    text += "Counts\n";
    for (const auto& [name, count] : counts) text += fmt::format("  {:28} {}\n", name, count);
    text += "Times in ms: number, median, 95th percentile, largest\n";
    for (auto [name, values] : times) {
        std::ranges::sort(values);
        const auto at = [&](double share) {
            return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
        };
        text += fmt::format("  {:28} {} {:.1f} {:.1f} {:.1f}\n", name, values.size(), at(0.5),
                            at(0.95), values.back());
    }
    std::size_t total = 0;
    for (const auto& [kind, seen] : violations) total += seen.size();
    text += fmt::format("Violations: {}\n", total);
    for (const auto& [kind, seen] : violations) {
        text += fmt::format("  {}: {}\n", kind, seen.size());
        for (const auto& what : seen) text += "    " + what + "\n";
    }
    return text;
}

}  // namespace Campaign
