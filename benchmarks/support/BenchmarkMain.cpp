// SPDX-License-Identifier: BSD-3-Clause
#include "benchmarks/support/BenchmarkMain.h"

#include <algorithm>
#include <sstream>

namespace {

constexpr char missedMark[] = "MISSED ";

bool hasMissed(const benchmark::BenchmarkReporter::Run& run) {
    return run.error_occurred || run.report_label.rfind(missedMark, 0) == 0;
}

/// Reports to the console and remembers whether anything was missed.
class CheckingReporter : public benchmark::ConsoleReporter {
public:
    CheckingReporter() : ConsoleReporter(OO_Tabular) {}

    bool missed() const { return m_missed; }

    void ReportRuns(const std::vector<Run>& runs) override {
        m_missed = m_missed || std::any_of(runs.begin(), runs.end(), hasMissed);
        ConsoleReporter::ReportRuns(runs);
    }

private:
    bool m_missed = false;
};

} // namespace

int runBenchmarks(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    CheckingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return reporter.missed() ? 1 : 0;
}

void judge(benchmark::State& state, const std::string& limit, bool kept) {
    state.SetLabel((kept ? std::string() : missedMark) + "limit: " + limit);
}

void judgeGrowth(benchmark::State& state, int few, int many, double limit,
                 const std::function<double(int count)>& milliseconds) {
    double costOfFew = 0.0;
    double costOfMany = 0.0;
    for (auto _ : state) {
        costOfFew = milliseconds(few);
        costOfMany = milliseconds(many);
    }
    state.counters["ms_" + std::to_string(few)] = costOfFew;
    state.counters["ms_" + std::to_string(many)] = costOfMany;
    state.counters["growth"] = costOfMany / costOfFew;
    std::ostringstream text;
    text << "growth " << limit << " (linear: " << many / few << ')';
    judge(state, text.str(), costOfMany <= limit * costOfFew);
}
