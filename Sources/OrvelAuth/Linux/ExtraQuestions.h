#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "OrvelAuth/Linux/PAMStack.h"
#include "OrvelCore/SettingsStore.h"

/// Detects accounts whose password check asks for more than the password, such as a one-time code.
/// The card has no field for it, so such accounts are not locked. A question that is met only
/// during a lock is answered with what is typed after the last space.
namespace OrvelAuth::ExtraQuestions {

/// Whether the stack contains a module that is known to ask. `home` is the user's home folder, in
/// which modules keep their data.
bool areExpected(const PAMStack& stack, const std::filesystem::path& home);

/// Records that a check met such a question and had no answer. `question` is the text of the
/// module. Any thread.
void noteAsked(std::string question);
/// The question of `noteAsked`, once; `nullopt` if none came since the last call. Any thread.
std::optional<std::string> takeAsked();
/// Whether a check in this process has ever met such a question. Any thread.
bool wereAsked();

/// Remembers that a check met such a question. This is valid as long as the stack does not change.
class Memory {
  public:
    explicit Memory(OrvelCore::SettingsStore& store) : store_(store) {}

    void remember(const PAMStack& stack);
    bool remembers(const PAMStack& stack) const;

  private:
    OrvelCore::SettingsStore& store_;
};

}  // namespace OrvelAuth::ExtraQuestions
