#include "OrvelUpdates/UpdateSystem.h"

#include <chrono>
#include <memory>
#include <utility>

#include "OrvelCore/Brand.h"
#include "OrvelUpdates/BackgroundChecks.h"
#include "OrvelUpdates/StagingFolder.h"
#include "OrvelUpdates/URLSessionUpdateTransport.h"
#include "OrvelUpdates/UpdateAlarm.h"
#include "OrvelUpdates/UpdatePlatform.h"

namespace OrvelUpdates {

namespace {

UpdateChecker liveChecker() {
    namespace Brand = OrvelCore::Brand;
    return {.feedURL = URL::parse(Brand::appcastURL).value_or(URL()),
            .currentBuild = Brand::build,
            .transport = std::make_shared<URLSessionUpdateTransport>(),
            .stagingDirectory = UpdateChecker::liveStagingDirectory(),
            .publicKey = AppcastSignature::publicKey(),
            .packageExtension = std::string(UpdatePlatform::packageExtension())};
}

}  // namespace

UpdateSystem UpdateSystem::live(OrvelSystem::MainLoop& loop) {
    const auto now = [] { return OrvelCore::Date(std::chrono::system_clock::now()); };
    auto checks = std::make_shared<BackgroundChecks>(
        loop, [checker = liveChecker()](const OrvelSystem::StopToken& stop,
                                        const UpdateChecker::OnProgress& onProgress) {
            return checker.check(stop, onProgress);
        });
    auto alarm = std::make_shared<UpdateAlarm>(loop, UpdatePlatform::continuousClock, now);
    UpdateSystem system;
    system.check = [checks](UpdateChecker::OnProgress onProgress) {
        return checks->run(std::move(onProgress));
    };
    system.cancel = [checks] { checks->cancel(); };
    system.now = now;
    system.schedule = [alarm](OrvelCore::Date date, std::function<void()> call) {
        alarm->set(date, std::move(call));
    };
    system.verify = [key = AppcastSignature::publicKey()](const std::filesystem::path& package,
                                                          const AppcastItem& item) {
        return UpdateChecker::stagedPackageIfIntact(package, item, key);
    };
    system.open = [](const std::filesystem::path& package, std::string_view archive) {
        // Write the file again, since another program may have the verified file open for writing.
        const auto folder =
            StagingFolder::open(package.parent_path(), StagingFolder::Missing::isAnError);
        if (!folder || !folder->write(package.filename(), archive)) return false;
        UpdatePlatform::openPackage(package);
        return true;
    };
    return system;
}

}  // namespace OrvelUpdates
