#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// Layout of a table. A benchmark is in the table if it has a counter with the name of the last column. Each benchmark
/// is a row. The text of its name before the first '/' is the first column, the text after it the second. Other
/// counters may be missing.
struct TableLayout {
    std::string title;
    std::string rowTitle;
    std::vector<std::string> columns;
};

/// When all benchmarks have run, prints their counters as Markdown tables.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    explicit TableReporter(std::vector<TableLayout> layouts);

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& report) override;
    void Finalize() override;

private:
    std::vector<TableLayout> tables;
    std::map<std::string, std::string> rows;  // rows of each table, by the table's title
};

}  // namespace bench
