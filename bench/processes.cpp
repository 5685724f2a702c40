// velda-bench-processes: whole programs beside each other, from their start to their end.
//
//   velda-bench-processes <runs> <title> <name> <program> [<argument>...] [-- <name> <program> ...]
//
// Each round runs every program once, in random order. With 0 runs callgrind counts instructions
// instead. The first two programs are those that the others are set in relation to.
#include "bench/check.h"
#include "bench/instructions.h"
#include "bench/random.h"
#include "bench/table.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace {

using namespace bench;

struct Program {
    std::string name;
    std::vector<std::string> command;
    std::vector<double> processor = {}; // milliseconds, user and system
    std::vector<double> wall = {};
};

double milliseconds(const timeval &time) {
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-3 * static_cast<double>(time.tv_usec);
}

void run(Program &program, const posix_spawn_file_actions_t &actions) {
    std::vector<char *> arguments;
    for (std::string &word : program.command) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    int status = 0;
    rusage usage;
    if (posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) != 0 ||
        wait4(child, &status, 0, &usage) != child || status != 0) {
        refuse(program.name, "fails");
    }
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
    program.wall.push_back(wall.count());
    program.processor.push_back(milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime));
}

void runInTurns(std::vector<Program> &programs, long rounds) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    Random random(1);
    std::vector<Program *> order;
    for (Program &program : programs) {
        order.push_back(&program);
    }
    for (; rounds > 0; --rounds) {
        for (size_t left = order.size(); left > 0; --left) {
            std::swap(order[left - 1], order[random.below(left)]);
            run(*order[left - 1], actions);
        }
    }
    posix_spawn_file_actions_destroy(&actions);
}

// A column of figures, and what they are by the first two programs'.
void addColumns(Table &table, const std::vector<Program> &programs, const std::string &unit,
                const std::vector<double> &figures) {
    for (size_t i = 0; i < programs.size(); ++i) {
        const std::string &name = programs[i].name;
        table.set(name, unit, fixed(figures[i], 3));
        for (const size_t reference : {size_t{0}, size_t{1}}) {
            table.set(name, unit + " / " + programs[reference].name,
                      fixed(figures[i] / figures[reference], 2));
        }
    }
}

std::vector<double> medians(const std::vector<Program> &programs,
                            std::vector<double> Program::*times) {
    std::vector<double> result;
    for (const Program &program : programs) {
        result.push_back(quantile(program.*times, 0.5));
    }
    return result;
}

std::vector<Program> programsFrom(int count, char **words) {
    std::vector<Program> programs;
    bool begins = true;
    for (int i = 0; i < count; ++i) {
        if (std::string_view(words[i]) == "--") {
            begins = true;
        } else if (std::exchange(begins, false)) {
            programs.push_back({words[i], {}});
        } else {
            programs.back().command.emplace_back(words[i]);
        }
    }
    return programs;
}

} // namespace

int main(int argc, char **argv) {
    std::vector<Program> programs = programsFrom(argc - 3, argv + 3);
    if (programs.size() < 2) {
        refuse("arguments", "two programs or more are needed");
    }
    Table table(argv[2]);
    const long rounds = std::strtol(argv[1], nullptr, 10);
    if (rounds > 0) {
        runInTurns(programs, rounds);
        addColumns(table, programs, "CPU ms", medians(programs, &Program::processor));
        addColumns(table, programs, "wall ms", medians(programs, &Program::wall));
    } else {
        std::vector<double> counts;
        for (const Program &program : programs) {
            counts.push_back(1e-6 * instructionsOf(program.command));
        }
        addColumns(table, programs, "million instructions", counts);
    }
    table.print();
    return 0;
}
