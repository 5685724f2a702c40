// velda-bench: times of the libraries and of their peers, as ratios.
//
//   velda-bench [--quick] [--benchmark_...]      prints the tables
//   velda-bench --instructions [--quick]         prints tables of counts instead
//   velda-bench --repeat <text> <row> <times>    does one piece of work, for a counter of instructions
//   velda-bench --text <text>                    writes one of the texts
#include "bench/check.h"
#include "bench/instructions.h"
#include "bench/report.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
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
            addRatios(reading, read, measure(read), "ns/B", 1e9);
            const Column write = writingColumn(text);
            addRatios(writing, write, measure(write), "ns/B", 1e9);
        }
        reading.print();
        writing.print();
    }
    Table ciphers("DES and MD5, libcrypto = 1");
    for (const size_t bytes : {64u, 1024u, 65'536u}) {
        const Column column = cipherColumn(bytes);
        addRatios(ciphers, column, measure(column), "ns/B", 1e9);
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

// What one more execution adds, so that the start and the making of the text drop out.
double instructionsEach(const Text &text, const std::string &row) {
    static const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    const auto count = [&](int times) {
        return instructionsOf({self, "--repeat", text.name, row, std::to_string(times)});
    };
    return (count(6) - count(2)) / 4;
}

// The product's cases and those that they are set in relation to.
void addCounts(Table &table, const Column &column, const Text &text) {
    Times counts;
    for (const Case &measured : column.cases) {
        const bool product = measured.row.rfind("xmlp", 0) == 0;
        if ((product || measured.row == measured.reference) && !measured.prepare) {
            counts[measured.row] = {instructionsEach(text, measured.row)};
        }
    }
    addRatios(table, column, counts, "instructions/B", 1);
}

void printCounts(bool quick) {
    Table reading("Instructions of reading and dropping, pugixml = 1");
    Table writing("Instructions of writing, pugixml = 1");
    std::vector<const char *> names = {"indented 204,799 B", "compact 204,799 B"};
    if (!quick) {
        names.insert(names.end(),
                     {"attributes 204,799 B", "names 204,799 B", "entities 204,799 B"});
    }
    for (const char *name : names) {
        const Text text = textNamed(name);
        checkParsers(text);
        addCounts(reading, readingColumn(text), text);
        addCounts(writing, writingColumn(text), text);
    }
    reading.print();
    writing.print();
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
    if (command == "--instructions") {
        printCounts(argc == 3 && std::string_view(argv[2]) == "--quick");
        return 0;
    }
    const bool quick = command == "--quick";
    initialize(quick, argc, argv);
    printTables(quick);
    return 0;
}
