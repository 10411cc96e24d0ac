// For any settings file and any record of attempts, the values that can be read stay within their
// limits, and are read back as they were written.
#include <cstdint>
#include <cstdlib>
#include <fstream>

#include <unistd.h>

#include "OrvelCore/AttemptLog.h"
#include "OrvelCore/Preferences.h"
#include "OrvelCore/PrivateAppList.h"
#include "OrvelCore/Text.h"
#include "OrvelCore/TriggerSettings.h"
#include "OrvelSystem/JSONSettingsStore.h"

#include "Support/ManualLoop.h"

using namespace OrvelCore;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

struct Folder {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("karvo-fuzz-" + std::to_string(getpid()));
    Folder() { std::filesystem::create_directories(path); }
    ~Folder() { std::filesystem::remove_all(path); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Folder folder;
    const auto file = folder.path / "settings.json";
    // `removeAll` of the store also deletes the folder.
    std::filesystem::create_directories(folder.path);
    std::ofstream output(file, std::ios::binary);
    output.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    output.close();
    require(output.good());
    const auto attempts = AttemptLog::load(file);
    require(std::ranges::is_sorted(attempts.attempts()));

    ManualLoop loop;
    Preferences prefs;
    TriggerSettings triggers;
    PrivateAppList apps;
    {
        OrvelSystem::JSONSettingsStore store(loop, file, [](std::error_code) {});
        prefs = Preferences::load(store);
        triggers = TriggerSettings::load(store);
        apps = PrivateAppList::load(store);
        require(prefs.lockIntensity >= BlurIntensity::unreadable);
        require(Text::characterCount(prefs.awayMessage) <= Preferences::awayMessageLimit);
        prefs.save(store);
        triggers.save(store);
        apps.save(store);
    }
    OrvelSystem::JSONSettingsStore store(loop, file, [](std::error_code) { std::abort(); });
    require(Preferences::load(store) == prefs);
    require(TriggerSettings::load(store) == triggers);
    require(PrivateAppList::load(store) == apps);
    store.removeAll();
    return 0;
}
