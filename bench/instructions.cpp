#include "bench/instructions.h"

#include "bench/check.h"

#include <cstdio>

namespace bench {

double instructionsOf(const std::vector<std::string> &command) {
    std::string line = "valgrind --tool=callgrind --callgrind-out-file=/dev/null";
    for (const std::string &word : command) {
        line.append(" '").append(word).append("'"); // nothing that is run has a quote in its name
    }
    line += " 2>&1 >/dev/null";
    FILE *output = popen(line.c_str(), "r");
    if (output == nullptr) {
        refuse(command[0], "can't be started");
    }
    double collected = 0;
    char text[512];
    while (std::fgets(text, sizeof text, output) != nullptr) {
        std::sscanf(text, "==%*d== Collected : %lf", &collected);
    }
    if (pclose(output) != 0 || !(collected > 0)) {
        refuse(command[0], "fails under callgrind");
    }
    return collected;
}

} // namespace bench
