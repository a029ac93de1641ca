#pragma once

/// Receives one logged line.
using LogObserver = void (*)(int priority, const char* tag, const char* text);

/// Sends all further log lines to `observer` instead of the standard error stream. Null restores the stream.
extern "C" void setLogObserver(LogObserver observer);
