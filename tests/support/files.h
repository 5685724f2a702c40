// Files and programs for tests.
#pragma once

#include <optional>
#include <string>

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

// The number that a file opened now would get: higher while another one is open.
int nextDescriptor();

struct Finished {
    int status = -1;
    std::string out;
    std::string err;
};

// Runs a shell command to its end in a folder.
Finished run(const std::string &command, const std::string &folder);

// The bytes that hexadecimal digits stand for.
std::string fromHex(const std::string &digits);
