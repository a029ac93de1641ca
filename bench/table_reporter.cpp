#include "bench/table_reporter.h"

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <ios>
#include <ostream>
#include <sstream>
#include <utility>

#include "bench/compiler.h"

namespace bench {

namespace {

/// Formats a number with three significant digits. If there are more digits before the decimal point, writes all of
/// these.
std::string formatted(double value) {
    std::ostringstream text;
    const int decimals = value >= 99.95 || value == 0.0 ? 0 : value >= 9.995 ? 1 : 2;
    text << std::fixed << std::setprecision(decimals) << value;
    return text.str();
}

std::string rowOf(const benchmark::BenchmarkReporter::Run& run, const TableLayout& table) {
    const std::string& name = run.run_name.function_name;
    const std::size_t slash = name.find('/');
    std::ostringstream row;
    row << "| " << name.substr(0, slash) << " | " << name.substr(slash + 1) << " |";
    for (const std::string& column : table.columns) {
        const auto counter = run.counters.find(column);
        row << ' ' << (counter == run.counters.end() ? "" : formatted(counter->second.value))
            << " |";
    }
    row << '\n';
    return row.str();
}

}  // namespace

TableReporter::TableReporter(std::vector<TableLayout> layouts) : tables(std::move(layouts)) {}

bool TableReporter::ReportContext(const Context& context) {
    GetOutputStream() << context.cpu_info.num_cpus << " processors, "
                      << formatted(context.cpu_info.cycles_per_second * 1e-9) << " GHz, "
                      << compiler << '\n';
    return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& report) {
    for (const Run& run : report) {
        const auto table = std::ranges::find_if(tables, [&](const TableLayout& layout) {
            return run.counters.contains(layout.columns.back());
        });
        if (table != tables.end()) {
            rows[table->title] += rowOf(run, *table);
        }
    }
}

void TableReporter::Finalize() {
    for (const TableLayout& table : tables) {
        if (rows[table.title].empty()) {
            continue;
        }
        std::ostream& out = GetOutputStream();
        out << '\n' << table.title << "\n\n| " << table.rowTitle << " |";
        std::string rule = "\n| --- | --- |";
        for (const std::string& column : table.columns) {
            out << ' ' << column << " |";
            rule += " ---: |";
        }
        out << rule << '\n' << rows[table.title];
    }
}

}  // namespace bench
