#pragma once

#include <sys/types.h>

#include <cstdio>
#include <filesystem>
#include <memory>

#include "app/size.h"
#include "hostkit/picture.h"

namespace player {

/// When the frames of a film are shown.
enum class FilmTiming {
    sixtyASecond,
    /// Each from the moment at which it was added: as the window showed it.
    wallClock
};

/// A film in the making: a running ffmpeg that is fed frame by frame. The program must ignore
/// SIGPIPE. Every member throws Failure when ffmpeg fails.
class Encoder {
public:
    /// The format is that of the name's extension: .mp4, .webm or .gif.
    Encoder(std::filesystem::path film, app::Size size, FilmTiming timing);
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
