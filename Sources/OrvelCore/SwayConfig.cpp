#include "OrvelCore/SwayConfig.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "OrvelCore/Text.h"

namespace OrvelCore {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 13> modifierNames{{
    {"shift", "Shift"},
    {"lock", "Lock"},
    {"caps_lock", "Lock"},
    {"control", "Ctrl"},
    {"ctrl", "Ctrl"},
    {"mod1", "Mod1"},
    {"alt", "Mod1"},
    {"mod2", "Mod2"},
    {"mod3", "Mod3"},
    {"mod4", "Mod4"},
    {"super", "Mod4"},
    {"logo", "Mod4"},
    {"mod5", "Mod5"},
}};

/// Files may include themselves.
constexpr int deepestInclude = 16;

std::string unquoted(std::string text) {
    if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
        text.back() == text.front())
        return text.substr(1, text.size() - 2);
    return text;
}

std::string codeName(std::string_view code) {
    return "code " + std::string(code);
}

SwayKeys parseKeys(std::string_view text, bool areCodes) {
    SwayKeys combination;
    while (!text.empty()) {
        const auto plus = text.find('+');
        const auto part = Text::lowerCase(text.substr(0, plus));
        text.remove_prefix(plus == std::string_view::npos ? text.size() : plus + 1);
        const auto* const name =
            std::ranges::find(modifierNames, part, [](const auto& entry) { return entry.first; });
        if (name != modifierNames.end())
            combination.modifiers.emplace(name->second);
        else if (!part.empty() && !part.starts_with("group"))
            combination.keys.insert(areCodes ? codeName(part) : part);
    }
    return combination;
}

class Parser {
  public:
    explicit Parser(const SwayInclude& include) : include_(include) {}

    void parse(std::string_view text, int depth = 0) {
        // The blocks of a file end in that file.
        const auto outer = std::exchange(blocks_, {});
        std::string line;
        while (!text.empty()) {
            const auto end = text.find('\n');
            line += text.substr(0, end);
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
            if (line.ends_with('\\') && !text.empty()) {
                line.pop_back();
                continue;
            }
            parseLine(std::exchange(line, {}), depth);
        }
        blocks_ = outer;
    }

    SwayBindings bindings;

  private:
    void parseLine(const std::string& text, int depth) {
        auto line = Text::trim(text);
        if (line.empty() || line.starts_with('#')) return;
        if (line.starts_with('}')) {
            if (!blocks_.empty()) blocks_.pop_back();
            return;
        }
        const bool isDefinition = line.starts_with("set ") || line.starts_with("set\t");
        auto words = Text::splitOnWhitespace(isDefinition ? line : replaceVariables(line));
        const bool opens =
            words.back() == "{" || (words.back().ends_with('{') && words.size() == 1);
        if (opens) {
            const auto name = words.front().substr(0, words.front().find('{'));
            const bool isDefaultMode =
                name == "mode" && words.size() == 3 && unquoted(words[1]) == "default";
            blocks_.push_back(isDefaultMode ? "" : name);
            return;
        }
        if (!isOnlyBindings()) return;
        if (!blocks_.empty() && !blocks_.back().empty())
            words.insert(words.begin(), blocks_.back());
        obey(words, depth);
    }

    // Blocks of other modes and of inputs do not matter. The default mode has an empty name.
    bool isOnlyBindings() const {
        return std::ranges::all_of(blocks_, [](const std::string& block) {
            return block.empty() || block == "bindsym" || block == "bindcode";
        });
    }

    void obey(const std::vector<std::string>& words, int depth) {
        const auto& command = words.front();
        if (command == "set" && words.size() >= 3) {
            std::string value;
            for (auto word = words.begin() + 2; word != words.end(); ++word)
                value += (value.empty() ? "" : " ") + *word;
            variables_[words[1]] = unquoted(replaceVariables(value));
        } else if (command == "bindsym" || command == "bindcode") {
            const auto keys = std::ranges::find_if_not(
                words.begin() + 1, words.end(),
                [](const std::string& word) { return word.starts_with("--"); });
            if (keys != words.end())
                bindings.bound.push_back(parseKeys(unquoted(*keys), command == "bindcode"));
        } else if (command == "include" && words.size() >= 2) {
            std::string path;
            for (auto word = words.begin() + 1; word != words.end(); ++word)
                path += (path.empty() ? "" : " ") + *word;
            const auto texts = depth < deepestInclude ? include_(unquoted(path)) : std::nullopt;
            if (!texts) bindings.isComplete = false;
            for (const auto& text : texts.value_or(std::vector<std::string>()))
                parse(text, depth + 1);
        }
    }

    /// Replaces the longest name at each place, as sway does.
    std::string replaceVariables(std::string_view text) const {
        std::string result;
        while (!text.empty()) {
            const std::pair<const std::string, std::string>* best = nullptr;
            for (const auto& variable : variables_) {
                if (text.starts_with(variable.first) &&
                    (!best || variable.first.size() > best->first.size()))
                    best = &variable;
            }
            if (best) {
                result += best->second;
                text.remove_prefix(best->first.size());
            } else {
                result += text.front();
                text.remove_prefix(1);
            }
        }
        return result;
    }

    const SwayInclude& include_;
    std::vector<std::string> blocks_;
    std::map<std::string, std::string> variables_;
};

}  // namespace

std::set<std::string> swayModifiers(Shortcut::Modifiers modifiers) {
    std::set<std::string> names;
    if (modifiers.contains(Shortcut::Modifiers::command)) names.insert("Mod4");
    if (modifiers.contains(Shortcut::Modifiers::option)) names.insert("Mod1");
    if (modifiers.contains(Shortcut::Modifiers::control)) names.insert("Ctrl");
    if (modifiers.contains(Shortcut::Modifiers::shift)) names.insert("Shift");
    return names;
}

bool SwayBindings::mayHave(const std::set<std::string>& modifiers, std::string_view keyName,
                           std::uint32_t xKeycode) const {
    const auto name = Text::lowerCase(keyName);
    const auto code = codeName(std::to_string(xKeycode));
    return !isComplete || std::ranges::any_of(bound, [&](const SwayKeys& keys) {
        return keys.modifiers == modifiers &&
               (keys.keys.contains(name) || keys.keys.contains(code));
    });
}

SwayBindings swayBindings(std::string_view config, const SwayInclude& include) {
    Parser parser(include);
    parser.parse(config);
    return std::move(parser.bindings);
}

}  // namespace OrvelCore
