#include "OrvelUI/Linux/Wording.h"

#include <array>
#include <cctype>

#include "OrvelUI/Linux/PseudoLocale.h"

namespace OrvelUI::Wording {

namespace {

struct Phrase {
    std::string_view mac;
    std::string_view here;
};

// At each position of a text the first matching phrase is used, so a longer phrase must precede a
// shorter one with which it begins.
constexpr std::array phrases{
    Phrase{"Touch ID or your Mac password", "your fingerprint or your account password"},
    Phrase{"Touch ID, or type your Mac password",
           "your fingerprint, or type your account password"},
    Phrase{"Touch ID or password", "Fingerprint or password"},
    Phrase{"Use Touch ID", "Use your fingerprint"},
    Phrase{"with Touch ID", "with your fingerprint"},
    Phrase{"takes Touch ID", "takes your fingerprint"},
    Phrase{"Touch ID", "Fingerprint"},
    Phrase{"your Mac password", "your account password"},
    Phrase{"Your Mac password", "Your account password"},
    Phrase{"Mac password", "Account password"},
    Phrase{"my Mac unlocks", "my session unlocks"},
    Phrase{"Lock Mac", "Lock computer"},
    Phrase{"the macOS lock", "the desktop's own lock"},
    Phrase{"lock macOS", "lock the desktop"},
    Phrase{"macOS already uses", "Your desktop already uses"},
    Phrase{"System Settings, Desktop and Dock, Hot Corners", "your desktop's settings"},
    Phrase{"Your menu bar is full, so macOS hides the",
           "Your desktop has no place for status icons, so it hides the"},
    Phrase{"menu bar", "panel"},
    Phrase{"open Karvo from Applications", "open Karvo from your applications"},
    Phrase{"Open Karvo from Applications", "Open Karvo from your applications"},
    Phrase{"Drag Karvo from Applications to the Trash", "Remove Karvo with your software manager"},
    Phrase{"Mac", "computer"},
    Phrase{"macOS", "the desktop"},
    Phrase{"Command", "Super"},
    Phrase{"Option", "Alt"},
};

bool isWordByte(char byte) {
    return std::isalnum(static_cast<unsigned char>(byte)) != 0 || (byte & 0x80) != 0;
}

// Only whole words match, so "Machine" or "Optional" is not changed.
bool standsAt(std::string_view text, std::size_t at, std::string_view phrase) {
    if (!text.substr(at).starts_with(phrase)) return false;
    const std::size_t end = at + phrase.size();
    return (at == 0 || !isWordByte(text[at - 1])) && (end == text.size() || !isWordByte(text[end]));
}

}  // namespace

std::string shown(std::string_view text) {
    std::string words;
    for (std::size_t at = 0; at < text.size();) {
        const Phrase* found = nullptr;
        for (const auto& phrase : phrases) {
            if (!standsAt(text, at, phrase.mac)) continue;
            found = &phrase;
            break;
        }
        if (found != nullptr) {
            words += found->here;
            at += found->mac.size();
        } else {
            words += text[at++];
        }
    }
    return pseudoTranslated(words);
}

std::string keycap(std::string_view cap) {
    static constexpr std::array caps{Phrase{"⌃", "Ctrl"}, Phrase{"⌥", "Alt"}, Phrase{"⇧", "Shift"},
                                     Phrase{"⌘", "Super"}, Phrase{"esc", "Esc"}};
    for (const auto& [mac, here] : caps)
        if (mac == cap) return std::string(here);
    return std::string(cap);
}

}  // namespace OrvelUI::Wording
