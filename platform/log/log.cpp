#include <android/log.h>
#include <standin_log.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>

#pragma GCC visibility push(default)

static std::atomic<LogObserver> logObserver{nullptr};

void setLogObserver(LogObserver observer) {
    logObserver = observer;
}

int __android_log_print(int priority, const char* tag, const char* format, ...) {
    char text[1024];
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (const LogObserver observer = logObserver) {
        observer(priority, tag, text);
    } else {
        std::fprintf(stderr, "%d/%s: %s\n", priority, tag, text);
    }
    return length;
}

#pragma GCC visibility pop
