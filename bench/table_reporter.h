#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// A table of the benchmarks that have its last column as a counter. Each benchmark is a row; the text before the
/// first '/' of its name and the text after it are the first two columns. Other counters may be missing.
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
    std::map<std::string, std::string> rows;  // rows of each table, by its title
};

}  // namespace bench
