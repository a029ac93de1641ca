#include "bench/history_reporter.h"

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <fstream>
#include <iomanip>
#include <ios>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>

#include "bench/compiler.h"

namespace bench {

namespace {

/// Replaces the commas of a text by semicolons, so that the text is one field of a CSV file. Kernel names contain
/// commas.
std::string field(std::string text) {
    std::ranges::replace(text, ',', ';');
    return text;
}

std::string today() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    char text[sizeof "2000-01-01"];
    std::strftime(text, sizeof text, "%Y-%m-%d", &parts);
    return text;
}

/// Returns the name of the processor from /proc/cpuinfo.
std::string processorName() {
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);) {
        const std::size_t colon = line.find(": ");
        if (line.starts_with("model name") && colon != std::string::npos) {
            return line.substr(colon + 2);
        }
    }
    return "unknown processor";
}

}  // namespace

HistoryReporter::HistoryReporter(std::string csvFile) : file(std::move(csvFile)) {}

bool HistoryReporter::ReportContext(const Context& context) {
    row = today() + ',' + field(processorName()) + " x " +
          std::to_string(context.cpu_info.num_cpus) + ',' + field(compiler);
    return true;
}

void HistoryReporter::ReportRuns(const std::vector<Run>& report) {
    for (const Run& run : report) {
        const auto ratio = run.counters.find("ratio");
        if (ratio != run.counters.end()) {
            std::ostringstream number;
            number << std::fixed << std::setprecision(2) << ratio->second.value;
            header += ',' + field(run.run_name.function_name);
            row += ',' + number.str();
        }
    }
}

void HistoryReporter::Finalize() {
    std::string firstLine;
    std::getline(std::ifstream(file), firstLine);
    if (!firstLine.empty() && firstLine != header) {
        errorText = file + ": its columns belong to other benchmarks; pass a new file to --history";
        return;
    }
    std::ofstream history(file, std::ios::app);
    if (firstLine.empty()) {
        history << header << '\n';
    }
    history << row << '\n' << std::flush;
    if (!history) {
        errorText =
            file + ": cannot be written; check the permissions, or pass another file to --history";
    }
}

}  // namespace bench
