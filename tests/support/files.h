// Files and programs for tests.
#pragma once

#include <optional>
#include <string>
#include <vector>

// A folder of its own that goes with its contents.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    std::string path(const std::string &name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

void writeFile(const std::string &path, const std::string &bytes);

// Nothing when there is no such file.
std::optional<std::string> readFile(const std::string &path);

struct Finished {
    int status = -1; // as a shell shows it
    std::string out;
    std::string err;
};

// Runs a program to its end. `limitFileSize` makes writing beyond that many bytes fail.
Finished run(const std::vector<std::string> &arguments, long limitFileSize = -1);
