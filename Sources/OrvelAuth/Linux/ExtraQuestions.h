#pragma once

#include <filesystem>
#include <string>

#include "OrvelAuth/Linux/PAMStack.h"
#include "OrvelCore/SettingsStore.h"

/// Detects accounts whose password check asks for more than the password, such as a one-time code.
/// The card has no field for it.
namespace OrvelAuth::ExtraQuestions {

/// Whether the stack contains a module that is known to ask. `home` is the user's home folder, in
/// which modules keep their data.
bool areExpected(const PAMStack& stack, const std::filesystem::path& home);

/// Records that a check met such a question. Any thread.
void noteAsked();
/// Whether a check in this process has met one since the last call. Any thread.
bool takeAsked();

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
