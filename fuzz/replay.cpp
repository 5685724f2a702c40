// Gives every file of the folders and every file that are named as arguments to a fuzz target.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

extern "C" {
int LLVMFuzzerInitialize(int *argc, char ***argv);
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
}

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(const fs::path &path) {
    if (!fs::is_directory(path)) {
        return {path};
    }
    std::vector<fs::path> files(fs::directory_iterator(path), fs::directory_iterator{});
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const fs::path &file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string read(std::istreambuf_iterator<char>(stream), {});
    // A copy of just this size.
    const auto bytes = std::make_unique<uint8_t[]>(read.size());
    std::copy(read.begin(), read.end(), bytes.get());
    LLVMFuzzerTestOneInput(bytes.get(), read.size());
}

} // namespace

int main(int argc, char **argv) {
    LLVMFuzzerInitialize(&argc, &argv);
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const fs::path &file : filesOf(argv[i])) {
            std::fprintf(stderr, "%s\n", file.c_str());
            replay(file);
            ++count;
        }
    }
    return count > 0 ? 0 : 1;
}
