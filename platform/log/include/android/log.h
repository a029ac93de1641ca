#pragma once

// The part of Android's log API that the library uses.

enum { ANDROID_LOG_ERROR = 6 };

extern "C" int __android_log_print(int priority, const char* tag, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
