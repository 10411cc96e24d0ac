// Runs a campaign of random lives. Each life is a separate process, so that it cannot affect
// another one, and a crash in it does not end the campaign.
#include <exception>

#include <fcntl.h>
#include <sys/wait.h>

#include "Life.h"
#include "Process.h"
#include "Report.h"

namespace {

using Campaign::Report;

// Seconds; more than any life takes, even on a loaded machine with a sanitizer.
constexpr unsigned patience = 420;

void liveAndTell(unsigned seed, int out) {
    Report report;
    try {
        Campaign::Life life(seed);
        try {
            life.live();
        } catch (const std::exception& error) {
            life.report().violations["harness"].emplace_back(error.what());
        }
        report = life.report();
    } catch (const std::exception& error) {
        report.violations["harness"].emplace_back(error.what());
    }
    const auto text = report.lines();
    for (std::size_t done = 0; done < text.size();) {
        const auto count = write(out, text.data() + done, text.size() - done);
        if (count <= 0) break;
        done += static_cast<std::size_t>(count);
    }
}

void live(unsigned seed, Report& campaign) {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        alarm(patience);
        liveAndTell(seed, ends[1]);
        std::exit(0);
    }
    close(ends[1]);
    std::string text;
    char block[4096];
    for (ssize_t count = 0; (count = read(ends[0], block, sizeof block)) > 0;)
        text.append(block, static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    endDescendants();
    const std::string name = "seed " + std::to_string(seed);
    campaign.counts["lives"] += 1;
    campaign.add(text, name);
    // Print violations immediately for a person who watches the run.
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("violation")) fmt::print("  {}\n", line);
    if (text.empty() || !WIFEXITED(status))
        campaign.violations["harness"].push_back(
            fmt::format("{}: ended with status {:#x}", name, status));
}

}  // namespace

int main(int argc, char** argv) {
    unsigned seed = 1;
    int lives = 10;
    double seconds = 1e9;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string option = argv[i];
        if (option == "--seed") seed = static_cast<unsigned>(std::stoul(argv[i + 1]));
        if (option == "--lives") lives = std::stoi(argv[i + 1]);
        // No life starts after this many seconds.
        if (option == "--seconds") seconds = std::stod(argv[i + 1]);
    }
    adoptOrphans();
    Report campaign;
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [start] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    std::size_t told = 0;
    for (int i = 0; i < lives && elapsed() < seconds; ++i) {
        live(seed + static_cast<unsigned>(i), campaign);
        std::size_t violations = 0;
        for (const auto& [kind, seen] : campaign.violations) violations += seen.size();
        fmt::print("seed {}: {:.0f} s{}\n", seed + static_cast<unsigned>(i), elapsed(),
                   violations > told ? ", violated" : "");
        std::fflush(stdout);
        told = violations;
    }
    fmt::print("{}", campaign.summary());
    return campaign.violations.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}
