#pragma once

namespace desktop {

/// Replaces the default actions of signals. SIGINT, SIGTERM and SIGHUP only set a flag, so that files can be completed
/// or removed. SIGPIPE and SIGXFSZ are ignored, so that the write fails instead of ending the program.
void handleSignals();

/// Returns true after SIGINT, SIGTERM or SIGHUP.
bool isInterrupted();

}  // namespace desktop
