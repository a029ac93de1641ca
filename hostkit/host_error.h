#pragma once

#include <stdexcept>

namespace hostkit {

/// What went wrong, in one line that a user can read as it stands.
struct HostError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace hostkit
