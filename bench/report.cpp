#include "bench/report.h"

#include <benchmark/benchmark.h>

#include <ctime>

namespace bench {

namespace {

// Half the distance of the quartiles by the median, of every row.
std::vector<double> &spreads() {
    static std::vector<double> all;
    return all;
}

double median(const std::vector<double> &values) {
    return quantile(values, 0.5);
}

double processorSeconds() {
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Collects what the library measures and prints nothing.
class Collector : public benchmark::BenchmarkReporter {
public:
    explicit Collector(Times *times) : times_(times) {}

    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override {
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                // A run that keeps its own time gives it as the real one.
                const bool own = run.run_name.time_type == "manual_time";
                const double all = own ? run.real_accumulated_time : run.cpu_accumulated_time;
                (*times_)[run.run_name.function_name].push_back(
                    all / static_cast<double>(run.iterations));
            }
        }
    }

private:
    Times *times_;
};

void enroll(const Case &measured) {
    const char *name = measured.row.c_str();
    if (!measured.prepare) {
        benchmark::RegisterBenchmark(name, [&measured](benchmark::State &state) {
            // What the case before has freed is put in order by the next large allocation: not at the
            // expense of this one.
            measured.once();
            for (auto _ : state) {
                measured.once();
            }
        });
        return;
    }
    const auto keepTime = [&measured](benchmark::State &state) {
        for (auto _ : state) {
            measured.prepare();
            const double start = processorSeconds();
            measured.once();
            state.SetIterationTime(processorSeconds() - start);
        }
    };
    benchmark::RegisterBenchmark(name, keepTime)->UseManualTime();
}

} // namespace

Times measure(const Column &column) {
    benchmark::ClearRegisteredBenchmarks();
    for (const Case &measured : column.cases) {
        enroll(measured);
    }
    Times times;
    Collector collector(&times);
    benchmark::RunSpecifiedBenchmarks(&collector);
    for (const auto &[row, values] : times) {
        spreads().push_back((quantile(values, 0.75) - quantile(values, 0.25)) / 2 / median(values));
    }
    return times;
}

void addRatios(Table &table, const Column &column, const Times &times, const std::string &unit,
               double scale) {
    for (const Case &measured : column.cases) {
        const auto found = times.find(measured.row);
        const auto reference = times.find(measured.reference);
        if (found == times.end() || reference == times.end()) {
            continue; // filtered out
        }
        const double own = median(found->second);
        const double perByte = scale * own / static_cast<double>(column.bytes);
        table.set(measured.row, column.name,
                  measured.row == measured.reference ? "**1** = " + fixed(perByte, 2) + " " + unit
                                                     : fixed(own / median(reference->second), 2));
    }
}

std::string spread() {
    const auto percent = [](double share) { return fixed(100 * quantile(spreads(), share), 1); };
    return "Half of the figures have quartiles within " + percent(0.5) +
           " % of the median, nine of ten within " + percent(0.9) + " %.";
}

} // namespace bench
