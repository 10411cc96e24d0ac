#pragma once

#include <map>
#include <string>
#include <vector>

namespace Campaign {

/// What one life gives, and what a campaign adds up. It passes from the life's process to the
/// campaign's as lines of text.
struct Report {
    std::map<std::string, int> faults;
    std::map<std::string, int> counts;
    /// By what was measured, in milliseconds.
    std::map<std::string, std::vector<double>> times;
    /// By kind; each with the time in its life and what was seen.
    std::map<std::string, std::vector<std::string>> violations;

    std::string lines() const;
    /// Adds what `lines` gave.
    void add(const std::string& lines, const std::string& life);
    std::string summary() const;
};

}  // namespace Campaign
