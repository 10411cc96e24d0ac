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

/// A folder of this user's alone, until it goes with what is in it.
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
    /// Empty when it could not be made.
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

/// Takes the description out of a flat package. Nothing else of it is unpacked.
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
        // Every bundle of the package is listed, and the program's own one tells of the package.
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

// This clock goes on while the machine sleeps, unlike the system's uptime.
double continuousClock() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace OrvelUpdates::UpdatePlatform
