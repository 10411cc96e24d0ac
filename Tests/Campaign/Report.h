#pragma once

namespace Campaign {

/// The result of one life, or the sum over a campaign. Each life runs in its own process and sends
/// its report to the campaign as lines of text.
struct Report {
    std::map<std::string, int> faults;
    std::map<std::string, int> counts;
    /// Milliseconds, keyed by what was measured.
    std::map<std::string, std::vector<double>> times;
    /// Keyed by kind; each entry gives the time in its life and what was seen.
    std::map<std::string, std::vector<std::string>> violations;

    std::string lines() const;
    /// Adds a report in the format of `lines`, and prefixes its violations with `life`.
    void add(const std::string& lines, const std::string& life);
    std::string summary() const;
};

}  // namespace Campaign
