#include <sys/stat.h>

#include "OrvelCore/AtomicFile.h"
#include "OrvelCore/Preferences.h"
#include "OrvelSystem/JSONSettingsStore.h"

#include "Support/ManualLoop.h"
#include "Support/TemporaryFolder.h"

namespace fs = std::filesystem;

namespace {

struct JSONSettings : testing::Test {
    TemporaryFolder folder;
    ManualLoop loop;
    fs::path file = folder / "Karvo/settings.json";
    std::vector<std::error_code> errors;

    std::unique_ptr<JSONSettingsStore> open() {
        return std::make_unique<JSONSettingsStore>(
            loop, file, [this](std::error_code error) { errors.push_back(error); });
    }
    void put(const std::string& text) {
        fs::create_directories(file.parent_path());
        writeText(file, text);
    }
    nlohmann::json stored() const { return nlohmann::json::parse(textOf(file), nullptr, false); }
};

}  // namespace

TEST_F(JSONSettings, GivesEachTypeToItsReaderAlone) {
    const auto owned = open();
    auto& store = *owned;
    store.setString("string", "1");
    store.setBool("bool", true);
    store.setInteger("integer", 7);
    store.setDouble("double", -2.75);
    store.setStringArray("array", {"a", "b"});
    store.setStringArray("empty", {});
    const std::vector<std::string> keys = {"string", "bool",  "integer",
                                           "double", "array", "missing"};
    for (const auto& key : keys) {
        EXPECT_EQ(store.has(key), key != "missing");
        EXPECT_EQ(store.stringForKey(key).has_value(), key == "string");
        EXPECT_EQ(store.boolForKey(key).has_value(), key == "bool");
        EXPECT_EQ(store.integerForKey(key).has_value(), key == "integer" || key == "double");
        EXPECT_EQ(store.doubleForKey(key).has_value(), key == "integer" || key == "double");
        EXPECT_EQ(store.stringArrayForKey(key).has_value(), key == "array");
    }
    EXPECT_EQ(store.stringForKey("string"), "1");
    EXPECT_EQ(store.integerForKey("integer"), 7);
    EXPECT_EQ(store.doubleForKey("integer"), 7.0);
    EXPECT_EQ(store.integerForKey("double"), -2);
    EXPECT_EQ(store.doubleForKey("double"), -2.75);
    EXPECT_THAT(store.stringArrayForKey("array").value(), ElementsAre("a", "b"));
    EXPECT_TRUE(store.stringArrayForKey("empty").value().empty());
}

TEST_F(JSONSettings, KeepsNumbersAtTheirLimits) {
    const auto owned = open();
    auto& store = *owned;
    for (const std::int64_t value : {INT64_MIN, INT64_MAX, std::int64_t{0}, std::int64_t{-1}}) {
        store.setInteger("n", value);
        EXPECT_EQ(store.integerForKey("n"), value);
    }
    for (const double huge : {1e19, -1e19, 9223372036854775808.0}) {
        store.setDouble("n", huge);
        EXPECT_FALSE(store.integerForKey("n"));
        EXPECT_EQ(store.doubleForKey("n"), huge);
    }
}

TEST_F(JSONSettings, WritesOnceForManyChangesAndReadsThemBack) {
    auto store = open();
    EXPECT_TRUE(errors.empty()) << "a missing file is no failure";
    Preferences prefs;
    prefs.awayMessage = "Zurück um 5 ☕";
    prefs.shortcuts.lockApp.reset();
    prefs.save(*store);
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(loop.timerCount(), 1U);
    loop.advance(JSONSettingsStore::writeDelay);
    EXPECT_TRUE(fs::exists(file));
    EXPECT_EQ(Preferences::load(*open()), prefs);
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);

    prefs.save(*store);
    EXPECT_EQ(loop.timerCount(), 0U) << "nothing changed, so nothing is written";
    EXPECT_TRUE(errors.empty());
}

TEST_F(JSONSettings, LosesNothingAtTheEnd) {
    open()->setBool("soundsOn", true);
    EXPECT_EQ(stored()["soundsOn"], true);
    EXPECT_EQ(loop.timerCount(), 0U);
}

TEST_F(JSONSettings, LeavesAloneWhatItDoesNotKnow) {
    put(R"({"future": {"a": [1, 2.5, null]}, "showsClock": "yes", "big": 18446744073709551615,
            "lockIntensity": 28, "mixed": ["a", 1]})");
    {
        const auto store = open();
        EXPECT_FALSE(store->boolForKey("showsClock"));
        EXPECT_TRUE(store->has("showsClock"));
        EXPECT_FALSE(store->integerForKey("big"));
        EXPECT_FALSE(store->stringArrayForKey("mixed"));
        EXPECT_FALSE(store->stringForKey("future"));
        store->setInteger("lockIntensity", 28);
        EXPECT_EQ(loop.timerCount(), 0U);
        store->setBool("soundsOn", false);
    }
    auto expected = nlohmann::json::parse(
        R"({"future": {"a": [1, 2.5, null]}, "showsClock": "yes", "big": 18446744073709551615,
            "lockIntensity": 28, "mixed": ["a", 1], "soundsOn": false})");
    EXPECT_EQ(stored(), expected);
    open()->setBool("showsClock", false);
    expected["showsClock"] = false;
    EXPECT_EQ(stored(), expected);
    EXPECT_TRUE(errors.empty());
}

TEST_F(JSONSettings, KeepsADamagedFileAsideWithoutLosingAnEarlierOne) {
    int damaged = 0;
    for (const char* text : {"{\"a\":", "[1]", "", "{} {}", "\"\xff\"", "{\"a\":1e999}"}) {
        put(text);
        errors.clear();
        {
            const auto store = open();
            EXPECT_EQ(errors.size(), 1U) << text;
            EXPECT_FALSE(store->has("a"));
            store->flush();
            EXPECT_EQ(textOf(file), text) << "nothing moves before there is something to write";
            store->setInteger("n", damaged);
        }
        ++damaged;
        EXPECT_EQ(stored()["n"], damaged - 1);
        EXPECT_EQ(textOf(file.string() + ".damaged-" + std::to_string(damaged)), text);
        EXPECT_EQ(errors.size(), 1U);
    }
    EXPECT_EQ(textOf(file.string() + ".damaged-1"), "{\"a\":");
}

TEST_F(JSONSettings, GoesOnInMemoryWhenTheFolderCannotBeWritten) {
    writeText(folder / "Karvo", "a file where the folder belongs");
    const auto store = open();
    errors.clear();
    store->setBool("soundsOn", true);
    loop.advance(JSONSettingsStore::writeDelay);
    EXPECT_EQ(errors.size(), 1U);
    EXPECT_EQ(store->boolForKey("soundsOn"), true);
    fs::remove(folder / "Karvo");
    store->setBool("soundsOn", false);
    store->flush();
    EXPECT_EQ(errors.size(), 1U);
    EXPECT_EQ(stored()["soundsOn"], false);
}

TEST_F(JSONSettings, TextThatIsNotUTF8IsWrittenAllTheSame) {
    open()->setString("awayMessage", "a\xff");
    EXPECT_EQ(open()->stringForKey("awayMessage"), "a\xEF\xBF\xBD");
}

TEST_F(JSONSettings, RemovesEveryTrace) {
    put("[]");
    const auto store = open();
    store->setBool("soundsOn", true);
    store->flush();
    store->setBool("showsClock", false);
    ASSERT_TRUE(fs::exists(file.string() + ".damaged-1"));
    writeText(file.parent_path() / "another's", "");
    store->removeAll();
    loop.advance(JSONSettingsStore::writeDelay);
    EXPECT_FALSE(store->has("soundsOn"));
    EXPECT_FALSE(fs::exists(file) || fs::exists(file.string() + ".damaged-1"));
    EXPECT_TRUE(fs::exists(file.parent_path() / "another's"));
    fs::remove(file.parent_path() / "another's");
    store->removeAll();
    EXPECT_FALSE(fs::exists(file.parent_path()));
}
