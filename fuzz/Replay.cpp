// Hands the corpus to a fuzzer, file by file, where no libFuzzer is at hand.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/Check.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesIn(const fs::path& folder)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

// From a block of exactly its size, so that a sanitizer sees a step behind the end.
void replay(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> read(std::istreambuf_iterator<char>(stream), {});
    const std::vector<std::uint8_t> input(read.begin(), read.end());
    for (std::size_t size = 0; size <= input.size(); ++size) {
        const std::vector<std::uint8_t> beginning(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(size));
        LLVMFuzzerTestOneInput(beginning.data(), beginning.size());
    }
}

}  // namespace

int main(int count, char** arguments)
{
    std::size_t replayed = 0;
    for (int i = 1; i < count; ++i) {
        for (const fs::path& file : filesIn(arguments[i])) {
            replay(file);
            ++replayed;
        }
    }
    std::printf("%zu inputs, each with all its beginnings\n", replayed);
    return replayed == 0 ? 1 : 0;
}
