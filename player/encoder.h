#pragma once

#include <sys/types.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "app/size.h"
#include "hostkit/image.h"

namespace player {

/// Returns the size of a film that shows a screen of this size. MP4 and WebM need even sides. `format` is, for example,
/// "mp4" or ".mp4".
app::Size filmSize(app::Size screen, std::string_view format);

/// Returns true if ffmpeg can decode at least the first frame of a film, which may be incomplete.
bool plays(const std::filesystem::path& film);

/// Encodes a film: passes frames to an ffmpeg process through a pipe. The program must ignore SIGPIPE.
/// All members throw Failure if ffmpeg fails.
class Encoder {
public:
    /// Starts ffmpeg. The file extension selects the format: .mp4, .webm or .gif. Error messages name the file `named`.
    /// If `framesPerSecond` is empty, the film shows each frame from the time at which it was added, as in the window.
    Encoder(const std::filesystem::path& film, std::filesystem::path named, app::Size size,
            std::optional<int> framesPerSecond);
    /// Kills ffmpeg if finish was not called. The file is incomplete then.
    ~Encoder();
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    void add(const hostkit::Image& frame);
    /// Waits until the file is complete.
    void finish();

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    /// Name of the film in error messages.
    std::filesystem::path named;
    /// Temporary file with ffmpeg's error messages.
    std::unique_ptr<std::FILE, Close> messages;
    pid_t process = 0;
    int frames = -1;
};

}  // namespace player
