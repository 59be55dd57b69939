// Feeds files to the fuzzer's function, for builds without a fuzzer: replay_model_corpus FILE-OR-FOLDER…
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& place)
{
    if (!std::filesystem::is_directory(place)) {
        return {place};
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(place)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream) {
        throw std::runtime_error("can't read " + file.string());
    }
    std::printf("%s\n", file.c_str()); // before it may go wrong
    std::fflush(stdout);
    // In room of its own size, so that a read past its end is seen.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

} // namespace

int main(int argc, char** argv)
{
    try {
        std::size_t count = 0;
        for (int argument = 1; argument < argc; ++argument) {
            for (const auto& file : filesOf(argv[argument])) {
                replay(file);
                ++count;
            }
        }
        std::printf("%zu inputs\n", count);
        return count > 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "replay_model_corpus: %s\n", error.what());
        return 1;
    }
}
