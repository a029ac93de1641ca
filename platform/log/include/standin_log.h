#pragma once

/// Receives one logged line.
using LogObserver = void (*)(int priority, const char* tag, const char* text);

/// Sends all later log lines to `observer` instead of standard error. If `observer` is null, sends them to standard
/// error again.
extern "C" void setLogObserver(LogObserver observer);
