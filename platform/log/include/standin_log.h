#pragma once

/// Receives every line logged from now on instead of the standard error stream; null restores that.
using LogObserver = void (*)(int priority, const char* tag, const char* text);

extern "C" void setLogObserver(LogObserver observer);
