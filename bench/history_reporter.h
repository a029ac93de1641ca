#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace bench {

/// Appends one row of ratios to a CSV file once all benchmarks have run, so that runs of different days and machines
/// can be compared. Columns: date (UTC), machine, compiler, then the ratio of reference time to library time of each
/// kernel.
class HistoryReporter : public benchmark::BenchmarkReporter {
public:
    /// @param csvFile CSV file; created with a line of column names if it does not exist
    explicit HistoryReporter(std::string csvFile);

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& report) override;
    void Finalize() override;

    /// Returns the reason why the row could not be appended, or an empty string.
    const std::string& fault() const { return faultText; }

private:
    std::string file;
    std::string header = "date,machine,compiler";
    std::string row;
    std::string faultText;
};

}  // namespace bench
