#pragma once

#include <stdexcept>

namespace hostkit {

/// The exception that hostkit throws. `what()` is one line of text that a program can show to the user.
struct HostError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace hostkit
