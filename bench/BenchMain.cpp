// Runs all benchmarks of a program in interleaved rounds and prints, for each pair X/ours and X/peer, the ratio of the
// medians. Arguments are those of Google Benchmark and come after ours.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                medians[run.run_name.function_name] = run.GetAdjustedRealTime();
            }
        }
    }
    void Finalize() override {
        std::printf("\n%-44s %10s\n", "pair", "peer/ours");
        for (const auto& [name, ours] : medians) {
            const std::size_t end = name.rfind("/ours");
            if (end == std::string::npos) continue;
            const auto peer = medians.find(name.substr(0, end) + "/peer");
            if (peer != medians.end()) std::printf("%-44s %10.2f\n", name.substr(0, end).c_str(), peer->second / ours);
        }
    }

private:
    std::map<std::string, double> medians;
};

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> words = {argv[0], "--benchmark_enable_random_interleaving=true",
                                      "--benchmark_repetitions=11", "--benchmark_min_time=0.05",
                                      "--benchmark_report_aggregates_only=true"};
    words.insert(words.end(), argv + 1, argv + argc);
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
