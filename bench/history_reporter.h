#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace bench {

/// Appends one row of ratios to a CSV file when all benchmarks have run. With this file, runs of different days and
/// machines can be compared. The first columns are date (UTC), machine and compiler. Each further column belongs to a
/// kernel: the reference's time divided by the library's time.
class HistoryReporter : public benchmark::BenchmarkReporter {
public:
    /// @param csvFile path of the CSV file; a missing file is created with a line of column names
    explicit HistoryReporter(std::string csvFile);

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& report) override;
    void Finalize() override;

    /// Returns the reason if the row could not be appended, else an empty string.
    const std::string& error() const { return errorText; }

private:
    std::string file;
    std::string header = "date,machine,compiler";
    std::string row;
    std::string errorText;
};

}  // namespace bench
