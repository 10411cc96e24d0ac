#include <sys/stat.h>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/AtomicFile.h"
#include "OrvelCore/AttemptLog.h"
#include "OrvelCore/LockMarker.h"

#include "Support/Environment.h"
#include "Support/TemporaryFolder.h"

namespace fs = std::filesystem;

namespace {

Date at(double seconds) {
    return dateFromSecondsSince1970(seconds);
}

const LockMarker marker{at(1772357400), "boot-1", 0};

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename());
    return names;
}

}  // namespace

TEST(LockMarker, IsWrittenAsTheGuardReadsIt) {
    const std::string json = marker.encoded();
    EXPECT_THAT(json, testing::HasSubstr(R"("lockedAt":"2026-03-01T09:30:00Z")"));
    EXPECT_THAT(json, testing::HasSubstr(R"("bootSession":"boot-1")"));
    EXPECT_THAT(json, testing::HasSubstr(R"("failures":0)"));
    EXPECT_EQ(json.find_first_of(" \n"), std::string::npos);
    EXPECT_EQ(LockMarker::decode(json), marker);
    // Fractions of a second are dropped.
    EXPECT_EQ(LockMarker::decode(LockMarker{at(1772357400.9), "b", 2}.encoded()),
              (LockMarker{at(1772357400), "b", 2}));
    const LockMarker left{at(0), "b", 0, true};
    EXPECT_EQ(LockMarker::decode(left.encoded()), left);
    // A boot identifier that is not UTF-8 must not prevent the marker.
    EXPECT_TRUE(LockMarker::decode(LockMarker{at(0), "\xff", 0}.encoded()));
}

TEST(LockMarker, AnythingElseIsNoMarker) {
    const char* const malformed[] = {
        "",
        "{",
        "[]",
        "null",
        R"({"bootSession":"b","failures":0})",
        R"({"lockedAt":"2026-03-01T09:30:00Z","failures":0})",
        R"({"lockedAt":"2026-03-01T09:30:00Z","bootSession":"b"})",
        R"({"lockedAt":1772357400,"bootSession":"b","failures":0})",
        R"({"lockedAt":"2026-03-01","bootSession":"b","failures":0})",
        R"({"lockedAt":"2026-03-01T09:30:00Z","bootSession":7,"failures":0})",
        R"({"lockedAt":"2026-03-01T09:30:00Z","bootSession":"b","failures":"0"})",
        R"({"lockedAt":"2026-03-01T09:30:00Z","bootSession":"b","failures":0.5})",
        R"({"lockedAt":"2026-03-01T09:30:00Z","bootSession":"b","failures":18446744073709551615})",
        R"({"lockedAt":"2026-03-01T09:30:00Z","bootSession":"b","failures":0} x)",
    };
    for (const char* text : malformed) EXPECT_FALSE(LockMarker::decode(text)) << text;
    EXPECT_TRUE(LockMarker::decode(
        R"({ "extra": [1], "failures": 3, "lockedAt": "2026-03-01T10:30:00+01:00",
             "bootSession": "b" })"));
}

TEST(LockMarkerStore, KeepsTheMarkerOfThisBoot) {
    const TemporaryFolder folder;
    LockMarkerStore store(folder / "a/Karvo/state.json");
    EXPECT_FALSE(store.read());
    store.clear();  // no file yet
    ASSERT_TRUE(store.write(marker));
    EXPECT_EQ(store.read(), marker);
    EXPECT_EQ(store.activeMarker("boot-1"), marker);
    EXPECT_FALSE(store.activeMarker("boot-2"));
    EXPECT_TRUE(store.read()) << "a stale marker is left for the next lock";
    ASSERT_TRUE(store.write({at(1), "boot-2", 0}));
    EXPECT_TRUE(store.activeMarker("boot-2"));
    store.clear();
    EXPECT_FALSE(store.read());

    writeText(folder / "file", "");
    EXPECT_FALSE(LockMarkerStore(folder / "file/state.json").write(marker));
}

TEST(AttemptLog, StaysSortedAndForgetsAfterThirtyDays) {
    AttemptLog log({at(30), at(10), at(20)});
    log.record(at(15));
    EXPECT_THAT(log.attempts(), ElementsAre(at(10), at(15), at(20), at(30)));
    EXPECT_THAT(log.since(at(15)), ElementsAre(at(15), at(20), at(30)));
    EXPECT_TRUE(log.since(at(31)).empty());
    log.prune(at(15 + 2592000));
    EXPECT_THAT(log.attempts(), ElementsAre(at(15), at(20), at(30)));
    log.prune(at(0));
    EXPECT_THAT(log.attempts(), ElementsAre(at(15), at(20), at(30))) << "the future is kept";
}

TEST(AttemptLog, SurvivesOnDiskWithItsFractions) {
    const TemporaryFolder folder;
    const auto file = folder / "new/Karvo/attempts.json";
    const AttemptLog log({at(1772351460.5), at(1772351400.25)});
    ASSERT_TRUE(log.save(file));
    EXPECT_EQ(textOf(file), "[1772351400.25,1772351460.5]");
    EXPECT_EQ(AttemptLog::load(file), log);

    writeText(file, "[3, 1.5, 2]");
    EXPECT_THAT(AttemptLog::load(file).attempts(), ElementsAre(at(1.5), at(2), at(3)));
    for (const char* text : {"", "{}", "[1,", "[1,\"2\"]", "[null]", "[1e999]", "7"}) {
        writeText(file, text);
        EXPECT_EQ(AttemptLog::load(file), AttemptLog()) << text;
    }
    EXPECT_EQ(AttemptLog::load(folder / "missing"), AttemptLog());
    EXPECT_FALSE(log.save(folder.path()));
}

TEST(AtomicFile, ReplacesTheFileAndLeavesNothingElse) {
    const TemporaryFolder folder;
    const auto file = folder / "Karvo/file";
    const mode_t old = umask(0);
    ASSERT_TRUE(writeAtomically(file, "one"));
    umask(old);
    ASSERT_TRUE(writeAtomically(file, std::string("t\0o", 3)));
    EXPECT_EQ(readFile(file).value(), std::string("t\0o", 3));
    EXPECT_THAT(namesIn(file.parent_path()), ElementsAre("file"));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(file.parent_path()).permissions(), fs::perms::owner_all);
}

TEST(AtomicFile, WritesThroughALinkAndFailsInPlace) {
    const TemporaryFolder folder;
    writeText(folder / "real", "old");
    fs::create_symlink(folder / "real", folder / "link");
    ASSERT_TRUE(writeAtomically(folder / "link", "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(textOf(folder / "real"), "new");

    // Relative links, a missing folder, and a circular link.
    fs::create_symlink("b", folder / "a");
    fs::create_symlink("later/c", folder / "b");
    ASSERT_TRUE(writeAtomically(folder / "a", "first"));
    EXPECT_TRUE(fs::is_symlink(folder / "a") && fs::is_symlink(folder / "b"));
    EXPECT_EQ(textOf(folder / "later/c"), "first");
    fs::create_symlink("circle", folder / "circle");
    ASSERT_TRUE(writeAtomically(folder / "circle", "broken"));
    EXPECT_EQ(textOf(folder / "circle"), "broken");
    for (const auto* const done : {"a", "b", "later", "circle"}) fs::remove_all(folder / done);

    fs::create_directory(folder / "taken");
    EXPECT_FALSE(writeAtomically(folder / "taken", "x"));
    EXPECT_THAT(namesIn(folder.path()), testing::UnorderedElementsAre("real", "link", "taken"));

    EXPECT_EQ(readFile(folder / "missing").error(), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(readFile(folder / "taken"));
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(readFile(folder / "pipe"));
}

TEST(AppFolders, FollowTheEnvironmentWhereItIsSound) {
    {
        const Environment data("XDG_DATA_HOME", "/d"), config("XDG_CONFIG_HOME", "/c");
        EXPECT_EQ(dataFolder(), "/d/Karvo");
        EXPECT_EQ(configFolder(), "/c/Karvo");
        EXPECT_EQ(AttemptLog::standardFile(), "/d/Karvo/attempts.json");
    }
    const Environment home("HOME", "/h");
    for (const char* unsound : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
        const Environment data("XDG_DATA_HOME", unsound), config("XDG_CONFIG_HOME", unsound);
        EXPECT_EQ(dataFolder(), "/h/.local/share/Karvo");
        EXPECT_EQ(configFolder(), "/h/.config/Karvo");
        for (const char* noHome : {static_cast<const char*>(nullptr), "here"}) {
            const Environment without("HOME", noHome);
            EXPECT_TRUE(dataFolder().is_absolute());
            EXPECT_NE(dataFolder(), "/h/.local/share/Karvo");
        }
    }
}
