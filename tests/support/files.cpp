#include "tests/support/files.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/resource.h>
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

Finished run(const std::vector<std::string> &arguments, long limitFileSize) {
    const TemporaryFolder folder;
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char *> argv;
        for (const std::string &argument : arguments) {
            argv.push_back(const_cast<char *>(argument.c_str()));
        }
        argv.push_back(nullptr);
        if (std::freopen(folder.path("out").c_str(), "w", stdout) == nullptr ||
            std::freopen(folder.path("err").c_str(), "w", stderr) == nullptr) {
            _exit(126);
        }
        if (limitFileSize >= 0) {
            const auto bytes = static_cast<rlim_t>(limitFileSize);
            const rlimit limit = {bytes, bytes};
            std::signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &limit);
        }
        execv(argv[0], argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    Finished finished;
    finished.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    finished.out = readFile(folder.path("out")).value_or("");
    finished.err = readFile(folder.path("err")).value_or("");
    return finished;
}
