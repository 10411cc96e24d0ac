#include <algorithm>
#include <utility>

#import <AppKit/AppKit.h>

#include "OrvelSystem/Workspace.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelSystem/macOS/Notifications.h"

namespace OrvelSystem {

namespace {

constexpr int iconSide = 64;  // pixels

NSRunningApplication* app(std::int64_t pid) {
    return [NSRunningApplication runningApplicationWithProcessIdentifier:static_cast<pid_t>(pid)];
}

std::optional<RunningApplication> described(NSRunningApplication* app) {
    if (!app) return {};
    RunningApplication result{.pid = app.processIdentifier};
    if (app.bundleIdentifier) result.bundleID = Cocoa::string(app.bundleIdentifier);
    result.name = Cocoa::string(app.localizedName);
    return result;
}

NSURL* urlOf(std::string_view bundleID) {
    return
        [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:Cocoa::string(bundleID)];
}

/// The name of the bundle's file, without its extension.
std::string fileName(NSString* path) {
    return Cocoa::string(path.lastPathComponent.stringByDeletingPathExtension);
}

std::int64_t pidOf(NSNotification* notification) {
    id app = notification.userInfo[NSWorkspaceApplicationKey];
    return [app isKindOfClass:[NSRunningApplication class]]
               ? static_cast<NSRunningApplication*>(app).processIdentifier
               : 0;
}

class LiveWorkspace final : public Workspace {
  public:
    std::vector<RunningApplication> runningApplications() override {
        std::vector<RunningApplication> apps;
        for (NSRunningApplication* app in NSWorkspace.sharedWorkspace.runningApplications)
            if (app.activationPolicy == NSApplicationActivationPolicyRegular)
                apps.push_back(*described(app));
        return apps;
    }
    std::optional<RunningApplication> application(std::int64_t pid) override {
        return described(app(pid));
    }
    std::optional<RunningApplication> frontmostApplication() override {
        return described(NSWorkspace.sharedWorkspace.frontmostApplication);
    }
    std::shared_ptr<const Picture> icon(std::int64_t pid) override {
        return Cocoa::picture(app(pid).icon, iconSide);
    }
    std::shared_ptr<const Picture> icon(std::string_view bundleID) override {
        NSURL* const url = urlOf(bundleID);
        if (!url) return nullptr;
        return Cocoa::picture([NSWorkspace.sharedWorkspace iconForFile:url.path], iconSide);
    }
    std::vector<InstalledApplication> installedApplications() override {
        std::vector<InstalledApplication> apps;
        NSArray* const folders = NSSearchPathForDirectoriesInDomains(
            NSApplicationDirectory, NSUserDomainMask | NSLocalDomainMask | NSSystemDomainMask, YES);
        for (NSString* folder in folders) {
            NSArray* const names = [NSFileManager.defaultManager contentsOfDirectoryAtPath:folder
                                                                                     error:nil];
            for (NSString* name in names) {
                NSString* const path = [folder stringByAppendingPathComponent:name];
                NSString* const bundleID = [NSBundle bundleWithPath:path].bundleIdentifier;
                if ([name hasSuffix:@".app"] && bundleID)
                    apps.push_back({Cocoa::string(bundleID), fileName(path)});
            }
        }
        std::ranges::sort(apps, {}, &InstalledApplication::name);
        return apps;
    }
    std::optional<std::string> nameOfInstalled(std::string_view bundleID) override {
        NSURL* const url = urlOf(bundleID);
        return url ? std::optional(fileName(url.path)) : std::nullopt;
    }
    bool isActive(std::int64_t pid) override { return app(pid).isActive; }
    void activate(std::int64_t pid) override {
        NSRunningApplication* const target = app(pid);
        [target unhide];
        [target activateWithOptions:NSApplicationActivationOptions{}];
    }
    void hide(std::int64_t pid) override { [app(pid) hide]; }
    void terminate(std::int64_t pid) override { [app(pid) terminate]; }

    OrvelCore::Subscription observe(Events events) override {
        NSNotificationCenter* const center = NSWorkspace.sharedWorkspace.notificationCenter;
        auto tokens = std::make_shared<std::vector<OrvelCore::Subscription>>();
        const auto withPID = [&](NSNotificationName name, std::function<void(std::int64_t)> tell) {
            tokens->push_back(observeNotification(
                center, name, [tell](NSNotification* note) { tell(pidOf(note)); }));
        };
        withPID(NSWorkspaceDidActivateApplicationNotification, events.activated);
        withPID(NSWorkspaceDidLaunchApplicationNotification, events.launched);
        withPID(NSWorkspaceDidTerminateApplicationNotification, events.terminated);
        withPID(NSWorkspaceActiveSpaceDidChangeNotification,
                [tell = events.activeSpaceChanged](std::int64_t) { tell(); });
        withPID(NSWorkspaceDidUnhideApplicationNotification,
                [tell = events.unhidden](std::int64_t) { tell(); });
        return tokens;
    }
};

}  // namespace

Workspace& Workspace::shared() {
    static LiveWorkspace workspace;
    return workspace;
}

}  // namespace OrvelSystem
