#pragma once

/// Receives one logged line.
using LogObserver = void (*)(int priority, const char* tag, const char* text);

/// Redirects all further log lines from the standard error stream to `observer`. Null restores the stream.
extern "C" void setLogObserver(LogObserver observer);
