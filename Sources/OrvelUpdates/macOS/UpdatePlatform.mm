#include "OrvelUpdates/UpdatePlatform.h"

#include <cstdlib>
#include <ctime>
#include <string>

#import <AppKit/AppKit.h>
#include <unistd.h>

#include "OrvelCore/AtomicFile.h"
#include "OrvelCore/Brand.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelUpdates::UpdatePlatform {

namespace {

namespace Brand = OrvelCore::Brand;
namespace Cocoa = OrvelSystem::Cocoa;

/// A temporary folder that only this user can access. The destructor removes it with its contents.
class PrivateFolder {
  public:
    PrivateFolder() {
        std::string name = Cocoa::string(NSTemporaryDirectory()) + "karvo-update.XXXXXX";
        if (::mkdtemp(name.data())) path_ = name;
    }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder() {
        std::error_code ignored;
        if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
    }
    /// Empty if the folder could not be created.
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

/// Extracts the description from a flat package, and nothing else.
NSData* packageInfo(std::string_view archive) {
    const PrivateFolder folder;
    if (folder.path().empty()) return nil;
    const auto package = folder.path() / "package.pkg";
    if (!OrvelCore::writeAtomically(package, archive)) return nil;
    NSTask* const task = [[NSTask alloc] init];
    task.executableURL = [NSURL fileURLWithPath:@"/usr/bin/xar"];
    task.arguments = @[
        @"-x", @"-f", Cocoa::string(package.string()), @"-C", Cocoa::string(folder.path().string()),
        @"PackageInfo"
    ];
    task.standardOutput = NSFileHandle.fileHandleWithNullDevice;
    task.standardError = NSFileHandle.fileHandleWithNullDevice;
    if (![task launchAndReturnError:nil]) return nil;
    [task waitUntilExit];
    if (task.terminationStatus != 0) return nil;
    return [NSData dataWithContentsOfFile:Cocoa::string((folder.path() / "PackageInfo").string())];
}

std::string attribute(NSXMLElement* element, NSString* name) {
    return Cocoa::string([element attributeForName:name].stringValue);
}

}  // namespace

std::optional<PackageIdentity> packageIdentity(std::string_view archive) {
    @autoreleasepool {
        NSData* const info = packageInfo(archive);
        if (!info) return {};
        NSXMLDocument* const document =
            [[NSXMLDocument alloc] initWithData:info
                                        options:NSXMLNodeLoadExternalEntitiesNever
                                          error:nil];
        // The description lists every bundle of the package; the program's own bundle has the
        // version and the build.
        for (id node in [document nodesForXPath:@"/pkg-info/bundle" error:nil]) {
            if (![node isKindOfClass:[NSXMLElement class]]) continue;
            NSXMLElement* const bundle = node;
            if (attribute(bundle, @"id") != Brand::bundleIdentifier) continue;
            const auto text = attribute(bundle, @"CFBundleVersion");
            char* end = nullptr;
            const long long build = std::strtoll(text.c_str(), &end, 10);
            if (text.empty() || *end != '\0' || build <= 0) return {};
            return PackageIdentity{.name = std::string(Brand::slug),
                                   .version = attribute(bundle, @"CFBundleShortVersionString"),
                                   .build = build};
        }
        return {};
    }
}

std::string_view packageExtension() {
    return ".pkg";
}

void openPackage(const std::filesystem::path& package) {
    NSURL* const url = [NSURL fileURLWithPath:Cocoa::string(package.string())];
    if (![NSWorkspace.sharedWorkspace openURL:url])
        [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ url ]];
}

// On macOS this clock continues to count while the machine is suspended, unlike the system's
// uptime.
double continuousClock() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace OrvelUpdates::UpdatePlatform
