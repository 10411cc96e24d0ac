#include <filesystem>
#include <system_error>

#import <AppKit/AppKit.h>
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>

#include "OrvelCore/AppFolders.h"
#include "OrvelModes/Windows/Dialogs.h"
#include "OrvelModes/Windows/Uninstaller.h"
#include "OrvelSystem/GuardService.h"
#include "OrvelSystem/LoginItem.h"
#include "OrvelSystem/Worker.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelModes {

namespace Cocoa = OrvelSystem::Cocoa;

namespace {

void inNextTurn(std::function<void()> call) {
    dispatch_async(dispatch_get_main_queue(), ^{
      call();
    });
}

std::vector<std::string> runChooser() {
    NSOpenPanel* const panel = [NSOpenPanel openPanel];
    panel.allowedContentTypes = @[ UTTypeApplication ];
    panel.allowsMultipleSelection = YES;
    panel.canChooseDirectories = NO;
    panel.prompt = @"Add";
    panel.directoryURL = [NSURL fileURLWithPath:@"/Applications"];
    [NSApp activate];
    std::vector<std::string> chosen;
    if ([panel runModal] != NSModalResponseOK) return chosen;
    for (NSURL* url in panel.URLs)
        if (NSString* const id = [NSBundle bundleWithURL:url].bundleIdentifier)
            chosen.push_back(Cocoa::string(id));
    return chosen;
}

std::size_t runAlert(const OrvelUI::Alert& alert) {
    NSAlert* const box = [[NSAlert alloc] init];
    box.messageText = Cocoa::string(alert.message);
    box.informativeText = Cocoa::string(alert.informative);
    NSButton* first = nil;
    NSButton* last = nil;
    for (const auto& button : alert.buttons) {
        last = [box addButtonWithTitle:Cocoa::string(button.title)];
        last.hasDestructiveAction = button.destructive;
        if (!first) first = last;
    }
    // By default Return presses the first button, and Escape one that is called "Cancel". If the
    // first button is destructive, Return presses the last one instead.
    if (first != last && alert.buttons.front().destructive) {
        first.keyEquivalent = @"";
        last.keyEquivalent = @"\r";
    } else if (first != last) {
        last.keyEquivalent = @"\033";
    }
    [NSApp activate];
    const auto pressed = static_cast<std::size_t>([box runModal] - NSAlertFirstButtonReturn);
    return pressed < alert.buttons.size() ? pressed : alert.buttons.size() - 1;
}

OrvelSystem::Task<void> unregisterFromSystem(OrvelSystem::MainLoop& loop) {
    (void)co_await OrvelSystem::runBlocking(loop, [] {
        OrvelSystem::GuardService::unregisterService();
        return true;
    });
}

}  // namespace

void Dialogs::alert(const OrvelUI::Alert& alert, std::function<void(std::size_t)> chosen) {
    // Deferred, because the alert runs its own loop and would block the caller.
    inNextTurn([alert, chosen = std::move(chosen)] { chosen(runAlert(alert)); });
}

void Dialogs::chooseApplications(
    std::function<void(const std::vector<std::string>& bundleIDs)> chosen) {
    inNextTurn([chosen = std::move(chosen)] { chosen(runChooser()); });
}

UninstallSystem UninstallSystem::live(OrvelSystem::MainLoop& loop,
                                      OrvelCore::SettingsStore& defaults,
                                      std::function<void()> quit) {
    return {.unregisterGuard = [&loop] { return unregisterFromSystem(loop); },
            .unregisterLoginItem = [] { (void)OrvelSystem::LoginItem::unregisterItem(); },
            .removeSettings = [&defaults] { defaults.removeAll(); },
            .removeSupportFolder =
                [] {
                    std::error_code ignored;
                    std::filesystem::remove_all(OrvelCore::dataFolder(), ignored);
                },
            .moveAppToTrash =
                [] {
                    return static_cast<bool>([NSFileManager.defaultManager
                          trashItemAtURL:NSBundle.mainBundle.bundleURL
                        resultingItemURL:nil
                                   error:nil]);
                },
            .quit = std::move(quit)};
}

}  // namespace OrvelModes
