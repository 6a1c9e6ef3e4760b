// The benchmarks' program: as the library has it, but that "copies" is shown as the plain number that it is. The library takes
// all that is divided by a time for a rate, and ends it in "s".
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace {

class Table : public benchmark::ConsoleReporter {
public:
    using ConsoleReporter::ConsoleReporter;

    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<Run> shown = runs;
        for (Run& run : shown) {
            const auto copies = run.counters.find("copies");
            if (copies != run.counters.end()) {
                copies->second.flags = benchmark::Counter::kDefaults;
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

} // namespace

int main(int count, char** arguments) {
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
