#pragma once

#include <sys/types.h>

#include <cstdio>
#include <filesystem>
#include <memory>

#include "hostkit/picture.h"

namespace player {

/// An MP4 file in the making: a running ffmpeg that is fed frame by frame at 60 a second. The
/// program must ignore SIGPIPE. Every member throws Failure when ffmpeg fails.
class Encoder {
public:
    Encoder(std::filesystem::path film, int width, int height);
    /// Ends an ffmpeg that is still running; the file is then worth nothing.
    ~Encoder();
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    void add(const hostkit::Picture& frame);
    /// Returns once the file is complete.
    void finish();

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::filesystem::path film;
    /// What ffmpeg says.
    std::unique_ptr<std::FILE, Close> messages;
    pid_t process = 0;
    int frames = -1;
};

}  // namespace player
