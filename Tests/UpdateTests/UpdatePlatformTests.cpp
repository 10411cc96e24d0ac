#include "OrvelUpdates/UpdatePlatform.h"

#include "Eventually.h"
#include "Packages.h"
#include "Support/Environment.h"
#include "Support/TemporaryFolder.h"

namespace fs = std::filesystem;

TEST(UpdatePlatform, ReadsWhatAPackageIs) {
    const auto describe = [](const std::string& archive) -> std::string {
        const auto identity = UpdatePlatform::packageIdentity(archive);
        return identity ? identity->name + " " + identity->version + " " +
                              std::to_string(identity->build)
                        : "none";
    };
    EXPECT_EQ(describe(makePackage("1.4-202611211200")), "karvo 1.4 202611211200");
    EXPECT_EQ(describe(makePackage("1.4~rc-1-7", "other")), "other 1.4~rc-1 7");
    for (const auto* const version : {"1.4", "1.4-7a", "1.4-0", "1.4-99999999999999999999"})
        EXPECT_EQ(describe(makePackage(version)), "none") << version;
    EXPECT_EQ(describe("text"), "none");
    EXPECT_EQ(describe(""), "none");
}

TEST(UpdatePlatform, HandsThePackageOrElseItsFolderToTheDesktop) {
    const TemporaryFolder folder;
    const auto log = folder / "log";
    writeText(folder / "xdg-open",
              "#!/bin/sh\necho \"$1\" >>" + log.string() + "\n[ -d \"$1\" ]\n");
    fs::permissions(folder / "xdg-open", fs::perms::owner_all);
    const ::Environment path("PATH", (folder.path().string() + ":/usr/bin:/bin").c_str());
    const auto package = folder / "Karvo-1 '$(id)'.deb";
    UpdatePlatform::openPackage(package);
    const auto expected = package.string() + "\n" + folder.path().string() + "\n";
    EXPECT_TRUE(eventually([&] { return textOf(log) == expected; })) << textOf(log);
}
