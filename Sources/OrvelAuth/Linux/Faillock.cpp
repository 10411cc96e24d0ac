#include "OrvelAuth/Linux/Faillock.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <set>
#include <sstream>
#include <utility>

#include "OrvelAuth/Linux/PAMService.h"
#include "OrvelCore/AtomicFile.h"

namespace OrvelAuth::Faillock {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view space = " \t\r\n\v\f";
// A week: where the module itself cuts every length of time.
constexpr std::int64_t maxInterval = 604800;

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(space);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}

template <class T>
std::optional<T> leadingNumber(std::string_view text) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && value >= 0 ? std::optional(value) : std::nullopt;
}

std::optional<std::int64_t> interval(std::string_view text) {
    const auto seconds = leadingNumber<std::int64_t>(text);
    return seconds ? std::optional(std::min(*seconds, maxInterval)) : std::nullopt;
}

std::optional<std::int64_t> unlockInterval(std::string_view text) {
    return text == "never" ? std::optional<std::int64_t>(0) : interval(text);
}

template <class T, class Target>
void assign(const std::optional<T>& value, Target& target) {
    if (value) target = *value;
}

std::string contents(const fs::path& file) {
    return OrvelCore::readFile(file).value_or(std::string());
}

void forEachLine(std::string_view text, const std::function<void(std::string_view)>& handle) {
    std::istringstream lines{std::string(text)};
    std::string line;
    std::string joined;
    while (std::getline(lines, line)) {
        joined += line;
        if (joined.ends_with('\\')) {
            joined.back() = ' ';
            continue;
        }
        handle(trimmed(std::string_view(joined).substr(0, joined.find('#'))));
        joined.clear();
    }
    if (!joined.empty()) handle(trimmed(std::string_view(joined).substr(0, joined.find('#'))));
}

// The words of a line of a stack; what stands in brackets is one word, without the brackets.
std::vector<std::string> words(std::string_view line) {
    std::vector<std::string> result;
    for (line = trimmed(line); !line.empty(); line = trimmed(line)) {
        const bool bracketed = line.front() == '[';
        if (bracketed) line.remove_prefix(1);
        const auto end =
            std::min(bracketed ? line.find(']') : line.find_first_of(space), line.size());
        result.emplace_back(line.substr(0, end));
        line.remove_prefix(std::min(line.size(), end + (bracketed ? 1 : 0)));
    }
    return result;
}

class Stack {
  public:
    explicit Stack(const Places& places) : places_(places) {}

    void read(const std::string& service) {
        // Stacks include each other, in circles too. A second look would find nothing new.
        if (!seen_.insert(service).second) return;
        forEachLine(file(service), [&](std::string_view line) { readLine(words(line)); });
    }
    std::vector<Settings> take() { return std::move(uses_); }

  private:
    std::string file(const std::string& service) const {
        if (service.starts_with('/')) return contents(service);
        for (const auto& folder : places_.pamFolders) {
            if (auto text = OrvelCore::readFile(folder / service)) return *text;
        }
        return {};
    }

    void readLine(const std::vector<std::string>& line) {
        if (line.size() == 2 && line[0] == "@include") return read(line[1]);
        if (line.size() < 3 || (line[0] != "auth" && line[0] != "-auth")) return;
        if (line[1] == "include" || line[1] == "substack") return read(line[2]);
        if (fs::path(line[2]).filename() == "pam_faillock.so") {
            uses_.push_back(settings(std::span(line).subspan(3)));
        }
    }

    Settings settings(std::span<const std::string> arguments) const {
        constexpr std::string_view conf = "conf=";
        Settings result;
        const auto named = std::ranges::find_if(
            arguments, [&](const std::string& argument) { return argument.starts_with(conf); });
        applyFile(contents(named == arguments.end() ? places_.configuration
                                                    : fs::path(named->substr(conf.size()))),
                  result);
        // Arguments stand above the file.
        for (const std::string_view argument : arguments) {
            const auto equals = std::min(argument.find('='), argument.size());
            apply(argument.substr(0, equals),
                  argument.substr(std::min(argument.size(), equals + 1)), result);
        }
        return result;
    }

    const Places& places_;
    std::set<std::string> seen_;
    std::vector<Settings> uses_;
};

// As the module writes them, in the byte order of the machine.
struct Record {
    char source[52];
    std::uint16_t reserved;
    std::uint16_t status;
    std::uint64_t time;
};
static_assert(sizeof(Record) == 64);
constexpr std::uint16_t valid = 0x1;

bool isAdmin(const Account& account, const Settings& settings) {
    return account.isRoot ||
           (!settings.adminGroup.empty() && account.isMember(settings.adminGroup));
}

}  // namespace

void apply(std::string_view name, std::string_view value, Settings& settings) {
    if (name == "dir") {
        if (value.starts_with('/')) settings.folder = value;
    } else if (name == "deny") {
        assign(leadingNumber<std::uint16_t>(value), settings.deny);
    } else if (name == "fail_interval") {
        assign(interval(value), settings.failInterval);
    } else if (name == "unlock_time") {
        assign(unlockInterval(value), settings.unlockTime);
    } else if (name == "root_unlock_time") {
        const auto seconds = unlockInterval(value);
        assign(seconds, settings.rootUnlockTime);
        if (seconds) settings.evenDenyRoot = true;
    } else if (name == "even_deny_root") {
        settings.evenDenyRoot = true;
    } else if (name == "admin_group") {
        settings.adminGroup = value;
    }
}

void applyFile(std::string_view text, Settings& settings) {
    forEachLine(text, [&](std::string_view line) {
        const auto nameEnd = std::min(line.find_first_of(" \t="), line.size());
        auto value = trimmed(line.substr(nameEnd));
        if (value.starts_with('=')) value.remove_prefix(1);
        apply(line.substr(0, nameEnd), trimmed(value), settings);
    });
}

Places Places::system() {
    return {OrvelAuth::pamFolders, "/etc/security/faillock.conf"};
}

std::vector<Settings> uses(const Places& places) {
    Stack stack(places);
    stack.read(pamService(places.pamFolders));
    return stack.take();
}

int failures(std::span<const std::byte> tally, const Settings& settings, bool admin,
             std::int64_t now) {
    std::vector<std::int64_t> times;
    for (; tally.size() >= sizeof(Record); tally = tally.subspan(sizeof(Record))) {
        Record record{};
        std::memcpy(&record, tally.data(), sizeof(record));
        // No clock has shown a time that is no number here; a damaged file may.
        if ((record.status & valid) != 0 && std::in_range<std::int64_t>(record.time))
            times.push_back(static_cast<std::int64_t>(record.time));
    }
    if (times.empty()) return 0;
    const auto within = [&](std::int64_t end) {
        return static_cast<int>(std::ranges::count_if(
            times, [&](std::int64_t time) { return end - time < settings.failInterval; }));
    };
    const auto latest = std::ranges::max(times);
    const auto unlock =
        admin ? settings.rootUnlockTime.value_or(settings.unlockTime) : settings.unlockTime;
    const int atLatest = within(latest);
    const bool locked =
        settings.deny > 0 && atLatest >= settings.deny && (unlock == 0 || now - latest <= unlock);
    return locked ? atLatest : within(now);
}

std::optional<int> limit(const Account& account, const Places& places) {
    std::optional<int> strictest;
    for (const auto& settings : uses(places)) {
        const auto found = settings.limit(isAdmin(account, settings));
        if (found) strictest = std::min(*found, strictest.value_or(*found));
    }
    return strictest;
}

std::optional<int> failures(const Account& account, const Places& places, std::int64_t now) {
    // A name that the module would not make a file of either.
    if (account.userName.empty() || account.userName.starts_with('.') ||
        account.userName.contains('/')) {
        return {};
    }
    std::optional<int> most;
    for (const auto& settings : uses(places)) {
        const auto tally = OrvelCore::readFile(settings.folder / account.userName);
        if (!tally) continue;
        const int found =
            failures(std::as_bytes(std::span(*tally)), settings, isAdmin(account, settings), now);
        most = std::max(found, most.value_or(0));
    }
    return most;
}

}  // namespace OrvelAuth::Faillock
