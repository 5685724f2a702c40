#include "tests/support/capture.h"

#include <cstdio>
#include <regex>
#include <sys/mman.h>
#include <unistd.h>

CapturedOutput::CapturedOutput() {
    std::fflush(stdout);
    saved_ = dup(STDOUT_FILENO);
    file_ = memfd_create("captured", MFD_CLOEXEC);
    dup2(file_, STDOUT_FILENO);
}

CapturedOutput::~CapturedOutput() {
    restore();
    close(file_);
}

void CapturedOutput::restore() {
    if (saved_ >= 0) {
        std::fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
        saved_ = -1;
    }
}

std::string CapturedOutput::take() {
    restore();
    std::string text(static_cast<size_t>(lseek(file_, 0, SEEK_END)), '\0');
    const ssize_t got = pread(file_, text.data(), text.size(), 0);
    text.resize(got < 0 ? 0 : static_cast<size_t>(got));
    return text;
}

std::vector<std::string> libraryLines(const std::string &output) {
    static const std::regex form(R"(\[ERROR\]\[(\w+)\(\):\d+\]: (.*)\r)");
    Lines lines;
    for (size_t begin = 0; begin < output.size();) {
        const size_t end = std::min(output.find('\n', begin), output.size());
        const std::string line = output.substr(begin, end - begin);
        std::smatch match;
        lines.push_back(std::regex_match(line, match, form) ? match[1].str() + ": " + match[2].str()
                                                            : line);
        begin = end + 1;
    }
    return lines;
}
