#include "Packages.h"

#include "Process.h"
#include "Support/TemporaryFolder.h"

namespace fs = std::filesystem;

std::string makePackage(const std::string& version, const std::string& name) {
    const TemporaryFolder folder;
    fs::create_directories(folder / "content/DEBIAN");
    writeText(folder / "content/DEBIAN/control",
              "Package: " + name + "\nVersion: " + version +
                  "\nArchitecture: all\nMaintainer: Test <test@example.com>\n"
                  "Description: test\n");
    fs::permissions(folder / "content", fs::perms(0755));
    fs::permissions(folder / "content/DEBIAN", fs::perms(0755));
    writeText(folder / "content/program", std::string(300'000, 'p'));
    const auto made = run({"dpkg-deb", "--build", "-Znone", folder / "content", folder / "package"},
                          {{"PATH", "/usr/bin:/bin"}});
    EXPECT_EQ(made.status, 0) << made.output;
    return textOf(folder / "package");
}
