#include <array>
#include <cstdint>
#include <fstream>
#include <limits>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sodium.h>

#include "OrvelCore/AtomicFile.h"
#include "OrvelUpdates/UpdateChecker.h"

#include "Support/SignedPackages.h"
#include "Support/TemporaryFolder.h"

using namespace OrvelUpdates;

namespace {

constexpr std::size_t packageSize = 100'000'000;

/// Serves a feed without a newer version.
class FeedOnly final : public UpdateTransport {
  public:
    explicit FeedOnly(std::string text) : text_(std::move(text)) {}
    std::expected<UpdateReply, UpdateTransportError> fetch(const UpdateRequest&) override {
        return UpdateReply{.bytes = text_, .redirect = {}};
    }

  private:
    std::string text_;
};

/// A feed in the format of Scripts/make-update.
std::string feedOf(int items) {
    std::string text;
    for (int build = items; build > 0; --build)
        text += fmt::format(R"(
    <item>
      <title>1.{0}</title>
      <sparkle:version>{0}</sparkle:version>
      <sparkle:shortVersionString>1.{0}</sparkle:shortVersionString>
      <enclosure url="https://updates.example.com/karvo/karvo_1.{0}_amd64.deb" length="9388608"
        type="application/octet-stream"
        sparkle:edSignature="{1:A<86}=="/>
    </item>)",
                            build, "");
    return feed(text);
}

/// The peak memory of this process in bytes since `forgetPeak`; NaN if the kernel does not report
/// it.
double peak() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) * 1024;
    return std::numeric_limits<double>::quiet_NaN();
}
void forgetPeak() {
    std::ofstream("/proc/self/clear_refs") << 5;
}

/// A package on disk, with the key and signature to verify it.
struct Package {
    SigningKey key;
    TemporaryFolder folder;
    std::filesystem::path file = folder / "Karvo-1.1.deb";
    std::string rawSignature;
    AppcastItem item;

    Package() {
        std::string bytes(packageSize, '\0');
        randombytes_buf(bytes.data(), bytes.size());
        rawSignature = key.rawSignature(bytes);
        item.edSignature = base64(rawSignature);
        item.length = packageSize;
        if (!OrvelCore::writeAtomically(file, bytes)) throw std::runtime_error("no disk");
    }
    static Package& shared() {
        static Package package;
        return package;
    }
};

void checkAgainstTenThousandVersions(benchmark::State& state) {
    const auto text = feedOf(10'000);
    const UpdateChecker checker{.feedURL = *URL::parse("https://updates.example.com/feed"),
                                .currentBuild = 10'000,
                                .transport = std::make_shared<FeedOnly>(text)};
    for (auto _ : state)
        if (checker.check() != UpdateResult(UpToDate{})) state.SkipWithError("not up to date");
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(checkAgainstTenThousandVersions)->Unit(benchmark::kMillisecond);

void verifyWithLibsodiumAlone(benchmark::State& state) {
    const auto& package = Package::shared();
    const auto bytes = OrvelCore::textOf(package.file).value();
    for (auto _ : state)
        if (crypto_sign_verify_detached(
                reinterpret_cast<const unsigned char*>(package.rawSignature.data()),
                reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(),
                package.key.publicHalf.raw.data()) != 0)
            state.SkipWithError("not verified");
}
BENCHMARK(verifyWithLibsodiumAlone)->Unit(benchmark::kMillisecond)->MinTime(5);

void verifyInMemory(benchmark::State& state) {
    const auto& package = Package::shared();
    const auto bytes = OrvelCore::textOf(package.file).value();
    for (auto _ : state)
        if (!AppcastSignature::verify(bytes, package.item, package.key.publicHalf))
            state.SkipWithError("not verified");
}
BENCHMARK(verifyInMemory)->Unit(benchmark::kMillisecond)->MinTime(5);

void verifyStagedPackage(benchmark::State& state) {
    const auto& package = Package::shared();
    forgetPeak();
    const double before = peak();
    for (auto _ : state)
        if (!UpdateChecker::stagedPackageIfIntact(package.file, package.item,
                                                  package.key.publicHalf))
            state.SkipWithError("not verified");
    state.counters["MBBeyondPackage"] = (peak() - before - packageSize) / 1e6;
}
BENCHMARK(verifyStagedPackage)->Unit(benchmark::kMillisecond)->MinTime(5);

}  // namespace

BENCHMARK_MAIN();
