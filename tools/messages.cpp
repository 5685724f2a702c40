#include "tools/messages.h"

#include <cstdio>
#include <cstring>

void printError(std::string_view name, std::string_view reason) {
    std::string line = "velda-dbtool: ";
    line.append(name).append(": ").append(reason).append("\n");
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void printErrno(std::string_view name, int error) {
    printError(name, std::strerror(error));
}

void printReport(const char *text, void *) {
    std::fputs(text, stderr);
}
