#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace bench {

/// When all benchmarks have run, appends one row of ratios to a CSV file, so that runs of different days and machines
/// can be compared. The columns are date (UTC), machine and compiler, then for each kernel the reference's time divided
/// by the library's time.
class HistoryReporter : public benchmark::BenchmarkReporter {
public:
    /// @param csvFile CSV file; created with a line of column names if it does not exist
    explicit HistoryReporter(std::string csvFile);

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& report) override;
    void Finalize() override;

    /// Returns the reason why the row could not be appended, or an empty string.
    const std::string& error() const { return errorText; }

private:
    std::string file;
    std::string header = "date,machine,compiler";
    std::string row;
    std::string errorText;
};

}  // namespace bench
