// Runs a fuzzer's inputs without the fuzzing engine, for compilers that have none. It runs each
// file of a folder unchanged and with a few small changes, which are the same in every run.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr int changesPerFile = 200;

void run(const std::string& input) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

std::string changed(std::string input, std::mt19937& random) {
    for (auto count = 1 + random() % 4; count > 0; --count) {
        const auto at = random() % (input.size() + 1);
        const auto length = std::min(random() % 8, input.size() - at);
        switch (random() % 4) {
            case 0:
                input.insert(at, 1, static_cast<char>(random()));
                break;
            case 1:
                input.erase(at, length);
                break;
            case 2:
                input.insert(random() % (input.size() + 1), input.substr(at, length));
                break;
            default:
                if (at < input.size()) input[at] = static_cast<char>(random());
        }
    }
    return input;
}

}  // namespace

int main(int count, char** arguments) {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i]))
            files.push_back(entry.path());
    }
    std::ranges::sort(files);
    std::mt19937 random(1);
    for (const auto& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::string input(std::istreambuf_iterator<char>(stream), {});
        std::cout << file << std::endl;
        run(input);
        for (int i = 0; i < changesPerFile; ++i) run(changed(input, random));
    }
    return files.empty() ? 1 : 0;
}
