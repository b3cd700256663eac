// Runs a fuzz target once on each file of a folder: seeds.TARGET FOLDER. A law that does not hold
// ends it.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);
// Only some targets have it.
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* count, char*** words);

int main(int count, char** words) {
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&count, &words);
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(words[1]))
        files.push_back(entry.path());
    std::ranges::sort(files);
    for (const std::filesystem::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        std::fprintf(stderr, "%s\n", file.filename().c_str()); // the last one is at fault
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu seeds hold the laws.\n", files.size());
    return files.empty() ? 1 : 0;
}
