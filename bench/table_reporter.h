#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// A table takes the benchmarks that have its last column as a counter; each is a row, named before
/// its first '/' and, in a second column, behind it. Other columns may lack their counter.
struct TableLayout {
    std::string title;
    std::string rowTitle;
    std::vector<std::string> columns;
};

/// Prints Markdown tables of counters once all benchmarks have run.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    explicit TableReporter(std::vector<TableLayout> layouts);

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& report) override;
    void Finalize() override;

private:
    std::vector<TableLayout> tables;
    std::map<std::string, std::string> rows;  // of each table, by its title
};

}  // namespace bench
