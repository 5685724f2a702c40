#include "tools/complain.h"

#include <cstdio>
#include <cstring>

void complain(std::string_view name, std::string_view reason) {
    std::string line = "velda-dbtool: ";
    line.append(name).append(": ").append(reason).append("\n");
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void complainOfSystem(std::string_view name, int error) {
    complain(name, std::strerror(error));
}

void printReport(const char *text, void *) {
    std::fputs(text, stderr);
}
