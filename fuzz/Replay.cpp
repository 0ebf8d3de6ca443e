// Hands the corpus to a fuzzer, file by file, where no libFuzzer is at hand.
//   <Name>Fuzz FOLDER            looks whether anything breaks
//   <Name>Fuzz FOLDER LIST       and whether every input comes to what the list says of it: the same on every target
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <vector>

#include "fuzz/Check.h"

namespace {

namespace fs = std::filesystem;

using Outcomes = std::map<std::string, std::string>;  // digests, by the file's name

std::vector<fs::path> filesIn(const fs::path& folder)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

// A short line for much text.
std::string digest(std::string_view text)
{
    const std::uint64_t hash = fuzz::hash(text);
    std::string hex;
    for (int shift = 60; shift >= 0; shift -= 4) hex += "0123456789abcdef"[hash >> shift & 0xF];
    return hex;
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

Outcomes replayAll(const fs::path& folder)
{
    Outcomes outcomes;
    for (const fs::path& file : filesIn(folder)) {
        std::string notes;
        fuzz::outcome = &notes;
        replay(file);
        outcomes[file.filename().string()] = digest(notes);
    }
    fuzz::outcome = nullptr;
    return outcomes;
}

Outcomes read(const fs::path& list)
{
    std::ifstream stream(list);
    Outcomes outcomes;
    for (std::string name, hash; stream >> name >> hash;) outcomes[name] = hash;
    return outcomes;
}

// Says what differs, as the list would have it.
int compare(const Outcomes& found, const Outcomes& wanted)
{
    for (const auto& [name, hash] : wanted)
        if (!found.contains(name)) std::printf("%s is listed, and not there\n", name.c_str());
    for (const auto& [name, hash] : found) {
        const auto listed = wanted.find(name);
        if (listed == wanted.end() || listed->second != hash) std::printf("%s %s\n", name.c_str(), hash.c_str());
    }
    return found == wanted ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments)
{
    if (count < 2) return 2;
    const Outcomes outcomes = replayAll(arguments[1]);
    std::printf("%zu inputs, each with all its beginnings\n", outcomes.size());
    if (outcomes.empty()) return 1;
    return count > 2 ? compare(outcomes, read(arguments[2])) : 0;
}
