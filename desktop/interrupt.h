#pragma once

namespace desktop {

/// Replaces the default actions of signals. SIGINT, SIGTERM and SIGHUP only set a flag, so that the program can finish
/// or remove its files. SIGPIPE and SIGXFSZ are ignored, so that a write fails instead of ending the program.
void handleSignals();

/// Returns true if SIGINT, SIGTERM or SIGHUP has arrived.
bool isInterrupted();

}  // namespace desktop
