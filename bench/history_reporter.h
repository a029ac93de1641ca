#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace bench {

/// Appends one row of ratios to a CSV file when all benchmarks have run. The file shows how the ratios differ between
/// days and machines. The first columns are date (UTC), machine and compiler. Each further column belongs to a kernel:
/// the time of the reference implementation divided by the time of the library's kernel.
class HistoryReporter : public benchmark::BenchmarkReporter {
public:
    /// @param csvFile path of the CSV file; a missing file is created with a line of column names
    explicit HistoryReporter(std::string csvFile);

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& report) override;
    void Finalize() override;

    /// Returns the reason why the row could not be appended, or an empty string if there was no error.
    const std::string& error() const { return errorText; }

private:
    std::string file;
    std::string header = "date,machine,compiler";
    std::string row;
    std::string errorText;
};

}  // namespace bench
