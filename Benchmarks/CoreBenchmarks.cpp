// The costs of the pure core: the plan of covers, which is made for each sample of the windows, and
// the synthesis of the sounds, which happens once per sound.

#include <atomic>
#include <cstdlib>
#include <new>

#include <benchmark/benchmark.h>

#include "OrvelCore/CoverPlanner.h"
#include "OrvelCore/SoundSynth.h"

using namespace OrvelCore;

namespace {
std::atomic<std::int64_t> allocations = 0;
}

// Prevent inlining, or g++ reports a mismatched allocation and deallocation.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

/// `count` windows of 20 apps on two displays. If `isProtected` is true, one app is locked, two are
/// private, and a window of each kind moves.
CoverInputs desktop(std::int64_t count, bool isProtected) {
    CoverInputs inputs;
    for (std::int64_t i = 0; i < count; ++i) {
        const auto place = static_cast<double>(i % 60);
        inputs.windows.push_back(
            {1000 + i, 100 + i % 20, i % 10 == 9 ? 20 : 0, {30 * place, 15 * place, 640, 480}});
    }
    if (isProtected) {
        inputs.lockedPIDs = {103};
        inputs.privatePIDs = {104, 105};
        inputs.moving = {1003, 1004};
    }
    inputs.activePID = 100;
    inputs.displays = {{0, 0, 1920, 1080}, {1920, 0, 1920, 1080}};
    inputs.peek = Point{700, 500};
    inputs.ownPID = 99;
    return inputs;
}

void plan(benchmark::State& state) {
    const auto inputs = desktop(state.range(0), state.range(1) != 0);
    const auto before = allocations.load();
    for (auto _ : state) benchmark::DoNotOptimize(CoverPlanner::plan(inputs));
    const auto calls = static_cast<double>(state.iterations());
    state.counters["covers"] = static_cast<double>(CoverPlanner::plan(inputs).size());
    state.counters["allocations"] = static_cast<double>(allocations - before) / calls;
    state.counters["per window"] =
        benchmark::Counter(calls * static_cast<double>(inputs.windows.size()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(plan)->ArgNames({"windows", "protected"})->ArgsProduct({{10, 200, 10000}, {0, 1}});

void threeSounds(benchmark::State& state) {
    for (auto _ : state) {
        for (const auto sound : allCases<LockSound>())
            benchmark::DoNotOptimize(SoundSynth::wav(SoundSynth::samples(sound)));
    }
}
BENCHMARK(threeSounds)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
