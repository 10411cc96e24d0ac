#include "OrvelAuth/Linux/PAMStack.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <utility>

#include "OrvelCore/AtomicFile.h"
#include "OrvelCore/Brand.h"

namespace OrvelAuth {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view space = " \t\r\n\v\f";

// Splits a line of a stack into words. Text in brackets is one word, without the brackets.
std::vector<std::string> words(std::string_view line) {
    std::vector<std::string> result;
    for (line = PAMText::trimmed(line); !line.empty(); line = PAMText::trimmed(line)) {
        const bool bracketed = line.front() == '[';
        if (bracketed) line.remove_prefix(1);
        const auto end =
            std::min(bracketed ? line.find(']') : line.find_first_of(space), line.size());
        result.emplace_back(line.substr(0, end));
        line.remove_prefix(std::min(line.size(), end + (bracketed ? 1 : 0)));
    }
    return result;
}

// Reads the lines of one type, such as "auth".
class Reader {
  public:
    Reader(const std::vector<fs::path>& folders, std::string type)
        : folders_(folders), type_(std::move(type)) {}

    void read(const std::string& service) {
        // Files may include each other, even in a cycle. Reading a file again would add nothing.
        if (!seen_.insert(service).second) return;
        PAMText::forEachLine(file(service), [&](std::string_view line) { readLine(words(line)); });
    }
    std::vector<PAMUse> take() { return std::move(uses_); }

  private:
    std::string file(const std::string& service) const {
        if (service.starts_with('/')) return OrvelCore::readFile(service).value_or(std::string());
        for (const auto& folder : folders_) {
            if (auto text = OrvelCore::readFile(folder / service)) return *text;
        }
        return {};
    }

    void readLine(const std::vector<std::string>& line) {
        if (line.size() == 2 && line[0] == "@include") return read(line[1]);
        if (line.size() < 3 || (line[0] != type_ && line[0] != "-" + type_)) return;
        if (line[1] == "include" || line[1] == "substack") return read(line[2]);
        uses_.push_back({.control = line[1],
                         .module = fs::path(line[2]).filename().string(),
                         .arguments = {line.begin() + 3, line.end()}});
    }

    const std::vector<fs::path>& folders_;
    std::string type_;
    std::set<std::string> seen_;
    std::vector<PAMUse> uses_;
};

std::vector<PAMUse> uses(const std::vector<fs::path>& folders, const char* type) {
    Reader reader(folders, type);
    reader.read(pamService(folders));
    return reader.take();
}

}  // namespace

std::string pamService(const std::vector<fs::path>& folders) {
    const std::string own(OrvelCore::Brand::slug);
    const bool installed = std::ranges::any_of(folders, [&](const auto& folder) {
        std::error_code error;
        return fs::exists(folder / own, error);
    });
    return installed ? own : "login";
}

PAMStack PAMStack::read(const std::vector<fs::path>& folders) {
    return {uses(folders, "auth"), uses(folders, "account")};
}

namespace PAMText {

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(space);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
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

}  // namespace PAMText

}  // namespace OrvelAuth
