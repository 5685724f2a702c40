// velda-bench: times of the libraries and of their peers, as ratios.
//
//   velda-bench [--quick] [--benchmark_...]      prints the tables
//   velda-bench --repeat <text> <row> <times>    does one piece of work, for a counter of instructions
//   velda-bench --text <text>                    writes one of the texts
#include "bench/report.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace bench;

void printTables(bool quick) {
    const std::vector<TextGroup> groups = allTexts(quick);
    for (const TextGroup &group : groups) {
        for (const Text &text : group.texts) {
            checkParsers(text);
        }
    }
    for (const TextGroup &group : groups) {
        Table reading(group.title + ": reading and dropping, pugixml = 1");
        Table writing(group.title + ": writing, pugixml = 1");
        for (const Text &text : group.texts) {
            const Column read = readingColumn(text);
            reading.add(read, measure(read));
            const Column write = writingColumn(text);
            writing.add(write, measure(write));
        }
        reading.print();
        writing.print();
    }
    Table ciphers("DES and MD5, libcrypto = 1");
    for (const size_t bytes : {64u, 1024u, 65'536u}) {
        const Column column = cipherColumn(bytes);
        ciphers.add(column, measure(column));
    }
    ciphers.print();
    std::printf("\n%s\n", spread().c_str());
}

Text textNamed(const std::string &name) {
    for (TextGroup &group : allTexts(true)) {
        for (Text &text : group.texts) {
            if (text.name == name) {
                return text;
            }
        }
    }
    refuse(name, "no such text");
}

void repeat(const std::string &textName, const std::string &row, long times) {
    const Text text = textNamed(textName);
    for (const Column &column : {readingColumn(text), writingColumn(text)}) {
        for (const Case &candidate : column.cases) {
            if (candidate.row == row) {
                for (; times > 0; --times) {
                    candidate.once();
                }
                return;
            }
        }
    }
    refuse(row, "no such row");
}

// The library takes its options from a command line; those of the caller come last and win.
void initialize(bool quick, int argc, char **argv) {
    std::vector<std::string> options = {
        argv[0], "--benchmark_enable_random_interleaving=true",
        quick ? "--benchmark_repetitions=3" : "--benchmark_repetitions=15",
        quick ? "--benchmark_min_time=0.001" : "--benchmark_min_time=0.02"};
    options.insert(options.end(), argv + (quick ? 2 : 1), argv + argc);
    std::vector<char *> pointers;
    for (std::string &option : options) {
        pointers.push_back(option.data());
    }
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) {
        std::exit(1);
    }
}

} // namespace

int main(int argc, char **argv) {
    const std::string_view command = argc > 1 ? argv[1] : "";
    if (command == "--repeat" && argc == 5) {
        repeat(argv[2], argv[3], std::strtol(argv[4], nullptr, 10));
        return 0;
    }
    if (command == "--text" && argc == 3) {
        std::fputs(textNamed(argv[2]).bytes.c_str(), stdout);
        return 0;
    }
    const bool quick = command == "--quick";
    initialize(quick, argc, argv);
    printTables(quick);
    return 0;
}
