#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <string>
#include <thread>

/// Starts a shell command and returns its process id. If the command begins with "exec", this is the process id of the
/// executed program.
inline pid_t start(const std::string& command) {
    const pid_t process = fork();
    if (process == 0) {
        execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        _exit(127);
    }
    return process;
}

/// Waits until the condition is true. Returns false after 60 s; even a slow machine needs less time.
inline bool waitFor(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

/// A virtual X display. The constructor stores the name of the display in the environment variable DISPLAY.
class VirtualDisplay {
public:
    /// @param screen width x height x depth, for example 800x800x24
    explicit VirtualDisplay(const std::string& screen) {
        int ends[2];
        char number[16] = {};
        if (pipe(ends) == 0) {
            server = start("exec Xvfb -displayfd " + std::to_string(ends[1]) +
                           " -noreset -screen 0 " + screen + " 2>/dev/null");
            close(ends[1]);
            EXPECT_GT(read(ends[0], number, sizeof number - 1), 0)
                << "Xvfb must start and print the number of its display";
            close(ends[0]);
        }
        setenv("DISPLAY", std::string(":").append(number, std::strcspn(number, "\n")).c_str(), 1);
        unsetenv("WAYLAND_DISPLAY");
    }
    ~VirtualDisplay() {
        kill(server, SIGTERM);
        waitpid(server, nullptr, 0);
    }
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    pid_t process() const { return server; }

private:
    pid_t server = 0;
};
