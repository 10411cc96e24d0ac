#pragma once

#include <filesystem>
#include <string>

#include "OrvelAuth/Linux/PAMStack.h"
#include "OrvelCore/SettingsStore.h"

/// Accounts whose check asks for more than the password, such as a one-time code, which the card
/// has no field for.
namespace OrvelAuth::ExtraQuestions {

/// Whether a module of the stack is known to ask. `home` is the folder where modules keep what
/// they know of the user.
bool areExpected(const PAMStack& stack, const std::filesystem::path& home);

/// Notes that a check met such a question. Any thread.
void noteAsked();
/// Whether a check of this process met one since the last call. Any thread.
bool takeAsked();

/// What a check has met, for as long as the stack stays as it is.
class Memory {
  public:
    explicit Memory(OrvelCore::SettingsStore& store) : store_(store) {}

    void remember(const PAMStack& stack);
    bool remembers(const PAMStack& stack) const;

  private:
    OrvelCore::SettingsStore& store_;
};

}  // namespace OrvelAuth::ExtraQuestions
