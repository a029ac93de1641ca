#include "desktop/failure.h"

#include <cerrno>
#include <cstdio>

#include "app/text.h"

namespace desktop {

Failure::Failure(const std::string& line) : std::runtime_error(app::oneLine(line)) {}

Failure::Failure(const std::string& message, const std::string& detail)
    : Failure(message + ": " + detail) {}

Failure cannotWrite(const std::filesystem::path& file, const std::error_code& error) {
    std::string reason = error.message();
    if (!reason.empty() && reason.front() >= 'A' && reason.front() <= 'Z') {
        reason.front() = static_cast<char>(reason.front() - 'A' + 'a');
    }
    return Failure("cannot write " + file.string(), reason);
}

void warn(const std::string& line) {
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, app::oneLine(line).c_str());
}

void warn(const std::string& message, const std::string& detail) {
    warn(message + ": " + detail);
}

}  // namespace desktop
