#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

/// Prints results as they come and keeps them, so that the ratios within one run can be printed at
/// the end.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    RatioReporter() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration) Keep(run);
    }

    /// Prints one line of the closing table: how many times as long `slow` takes as `fast`. With a
    /// goal (0 = none) the line says whether it was met. A negative goal is an upper bound: the
    /// ratio must not exceed its absolute value.
    void PrintRatio(const std::string& slow, const std::string& fast, double goal = 0) const
    {
        const auto s = m_seconds.find(slow);
        const auto f = m_seconds.find(fast);
        if (s == m_seconds.end() || f == m_seconds.end()) return; // filtered out
        const double ratio = s->second / f->second;
        std::printf("| %-38s | %-38s | %8.2f | %-24s |\n", slow.c_str(), fast.c_str(), ratio,
                    Verdict(ratio, goal).c_str());
    }

    /// Does the same for two benchmarks with the same argument.
    void PrintRatioAt(int argument, const std::string& slow, const std::string& fast,
                      double goal = 0) const
    {
        const std::string number = std::to_string(argument);
        PrintRatio(slow + "/" + number, fast + "/" + number, goal);
    }

    /// Runs the benchmarks that the command line chooses and prints the closing table, whose lines
    /// `printRatios` prints. The result is that of the program.
    static int RunAll(int argc, char** argv, void (*printRatios)(const RatioReporter&))
    {
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
        RatioReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter);
        std::printf("\n| %-38s | %-38s | %8s | %-24s |\n", "takes", "times as long as", "ratio",
                    "goal");
        printRatios(reporter);
        return 0;
    }

private:
    // The quickest repetition of a benchmark counts, because other work on the machine only adds
    // time.
    void Keep(const Run& run)
    {
        benchmark::BenchmarkName name = run.run_name;
        name.repetitions.clear();
        name.min_time.clear();
        name.iterations.clear();
        name.time_type.clear();
        const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
        const auto known = m_seconds.try_emplace(name.str(), seconds).first;
        known->second = std::min(known->second, seconds);
    }

    static std::string Verdict(double ratio, double goal)
    {
        if (goal == 0) return "";
        char text[64];
        const bool met = goal > 0 ? ratio >= goal : ratio <= -goal;
        std::snprintf(text, sizeof text, "%s %g: %s", goal > 0 ? "at least" : "at most",
                      goal > 0 ? goal : -goal, met ? "met" : "missed");
        return text;
    }

    std::map<std::string, double> m_seconds;
};
