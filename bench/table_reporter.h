#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// Layout of a table. Each benchmark whose counters include the last column is a row. A benchmark has a name such as
/// "move/60x107": the text before the first '/' is the first column, and the text after it is the second. If a
/// benchmark lacks the counter of another column, the field in that column is empty.
struct TableLayout {
    std::string title;
    std::string rowTitle;
    std::vector<std::string> columns;
};

/// Prints the counters of all benchmarks as Markdown tables when all benchmarks have run.
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
