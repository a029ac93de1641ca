#include "desktop/failure.h"

#include <cerrno>
#include <cstdio>

#include "app/text.h"

namespace desktop {

Failure::Failure(const std::string& line) : std::runtime_error(app::oneLine(line)) {}

Failure::Failure(const std::string& message, const std::string& detail)
    : Failure(message + ": " + detail) {}

void warn(const std::string& line) {
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, app::oneLine(line).c_str());
}

void warn(const std::string& message, const std::string& detail) {
    warn(message + ": " + detail);
}

}  // namespace desktop
