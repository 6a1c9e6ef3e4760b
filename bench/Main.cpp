// The benchmarks' program: as the library has it, but that what is no rate is shown as the plain number that it is. The library
// takes all that is divided by a time for a rate, and ends it in "s".
#include "effect/Kovalune.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

class Table : public benchmark::ConsoleReporter {
public:
    using ConsoleReporter::ConsoleReporter;

    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<Run> shown = runs;
        for (Run& run : shown) {
            for (const char* const name : {"copies", "plain", "one thread"}) {
                const auto counter = run.counters.find(name);
                if (counter != run.counters.end()) {
                    counter->second.flags = benchmark::Counter::kDefaults;
                }
            }
        }
        ConsoleReporter::ReportRuns(shown);
    }
};

bool namesAFormat(int count, char** arguments) {
    for (int i = 1; i < count; ++i) {
        if (std::strncmp(arguments[i], "--benchmark_format", std::strlen("--benchmark_format")) == 0) {
            return true;
        }
    }
    return false;
}

/// Takes "--cpu SET" out of the arguments, from wherever it stands. False where this machine has no such set.
bool takeInstructionSet(int& count, char** arguments) {
    for (int i = 1; i + 1 < count; ++i) {
        if (std::strcmp(arguments[i], "--cpu") == 0) {
            const std::string set = arguments[i + 1];
            std::copy(arguments + i + 2, arguments + count, arguments + i);
            count -= 2;
            if (!kovalune::useInstructionSet(set)) {
                std::fprintf(stderr, "kovalune_bench: --cpu: this machine has no '%s'\n", set.c_str());
                return false;
            }
        }
    }
    return true;
}

} // namespace

int main(int count, char** arguments) {
    if (!takeInstructionSet(count, arguments)) {
        return 2;
    }
    const bool isTable = !namesAFormat(count, arguments);
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
        return 1;
    }
    if (isTable) {
        Table table(benchmark::ConsoleReporter::OO_Tabular);
        benchmark::RunSpecifiedBenchmarks(&table);
    } else {
        benchmark::RunSpecifiedBenchmarks();
    }
    benchmark::Shutdown();
    return 0;
}
