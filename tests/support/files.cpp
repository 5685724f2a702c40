#include "tests/support/files.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "velda-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void writeFile(const std::string &path, const std::string &bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::optional<std::string> readFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

int nextDescriptor() {
    const int descriptor = open("/", O_RDONLY | O_CLOEXEC);
    close(descriptor);
    return descriptor;
}

Finished run(const std::string &command, const std::string &folder) {
    const TemporaryFolder streams;
    const std::string redirected = "cd '" + folder + "' && (" + command + ") >'" +
                                   streams.path("out") + "' 2>'" + streams.path("err") + "'";
    const int status = std::system(redirected.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            readFile(streams.path("out")).value_or(""), readFile(streams.path("err")).value_or("")};
}

std::string fromHex(const std::string &digits) {
    std::string bytes;
    for (size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
    return bytes;
}
