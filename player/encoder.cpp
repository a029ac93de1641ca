#include "player/encoder.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "desktop/failure.h"

namespace player {

using desktop::Failure;

namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

void append(Words& words, std::initializer_list<const char*> more) {
    words.insert(words.end(), more.begin(), more.end());
}

void appendTiming(Words& words, std::optional<int> framesPerSecond) {
    if (framesPerSecond) {
        words.emplace_back("-framerate");
        words.push_back(std::to_string(*framesPerSecond));
    } else {
        // The rate of 1000 gives the time stamps a resolution of 1/1000 s.
        append(words, {"-use_wallclock_as_timestamps", "1", "-framerate", "1000"});
    }
}

/// Crops to even sizes, which yuv420p needs, and converts to BT.709, which video players expect.
constexpr const char* videoColors =
    "crop=trunc(iw/2)*2:trunc(ih/2)*2:0:0,scale=out_color_matrix=bt709";

/// Returns the ffmpeg filter that limits a GIF from the window to 25 frames per second, a rate that all browsers play.
/// Returns an empty text for a film that has a fixed frame rate. The filter drops frames and never repeats a frame. A
/// repeated frame would delay the next time stamp, and this delay would cause another repetition.
std::string gifFrames(std::optional<int> framesPerSecond) {
    return framesPerSecond ? "" : "select='isnan(prev_selected_t)+gte(t-prev_selected_t,0.039)',";
}

/// Computes a palette for each frame. A palette for the whole film would keep all frames in memory.
constexpr const char* gifColors =
    "scale='min(iw,iw*480/max(iw,ih))':-1:flags=area,split[a][b];"
    "[a]palettegen=stats_mode=single[p];[b][p]paletteuse=new=1:dither=bayer";

void appendFormat(Words& words, const std::string& extension, std::optional<int> framesPerSecond) {
    if (extension == ".gif") {
        words.emplace_back("-filter_complex");
        words.push_back(gifFrames(framesPerSecond) + gifColors);
        return;
    }
    append(words, {"-vf", videoColors, "-colorspace", "bt709", "-color_primaries", "bt709",
                   "-color_trc", "bt709", "-pix_fmt", "yuv420p"});
    if (extension == ".webm") {
        append(words, {"-c:v", "libvpx-vp9", "-deadline", "realtime", "-cpu-used", "6", "-row-mt",
                       "1", "-crf", "28", "-b:v", "0"});
    } else {  // H.264 plays everywhere; faststart lets a player begin before it has the whole file
        append(words,
               {"-c:v", "libx264", "-preset", "fast", "-crf", "18", "-movflags", "+faststart"});
    }
}

Words commandLine(const fs::path& film, app::Size size, std::optional<int> framesPerSecond) {
    Words words = {"ffmpeg", "-hide_banner", "-loglevel",     "error", "-y",
                   "-f",     "rawvideo",     "-pixel_format", "rgba",  "-video_size"};
    words.push_back(std::to_string(size.width) + "x" + std::to_string(size.height));
    appendTiming(words, framesPerSecond);
    append(words, {"-i", "pipe:0"});
    if (!framesPerSecond) {
        append(words, {"-vsync", "vfr"});
    }
    appendFormat(words, film.extension().string(), framesPerSecond);
    words.push_back("file:" + film.string());
    return words;
}

/// Starts a program from the search path with the given stdin and stderr. Returns 0 or an error number.
int spawn(pid_t& process, std::vector<std::string> arguments, int input, int messages) {
    std::vector<char*> argv;
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&files, messages, STDERR_FILENO);
    // ffmpeg runs in a separate process group, so Ctrl-C does not end it before its film is complete. ffmpeg gets the
    // default action of SIGPIPE, although the player ignores this signal.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setpgroup(&attributes, 0);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);
    const int error =
        posix_spawnp(&process, argv.front(), &files, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

/// Waits until a process ends. Returns true if the process succeeded.
bool hasSucceeded(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

Failure systemFailure(const std::string& message, int error) {
    return Failure(message, std::generic_category().message(error));
}

/// Returns the failure that ffmpeg's messages report: a failed write or, if there is none, the last message that is not
/// a separator line.
Failure reportedFailure(std::FILE* messages, const fs::path& named) {
    std::rewind(messages);
    std::string last;
    std::array<char, 512> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), messages) != nullptr) {
        const std::string said(line.data(), std::strcspn(line.data(), "\n"));
        for (const int number : {ENOSPC, EFBIG}) {
            const std::error_code error(number, std::generic_category());
            if (said.find(error.message()) != std::string::npos) {
                return desktop::cannotWrite(named, error);
            }
        }
        last = said.ends_with("-- ") ? last : said;
    }
    return Failure("ffmpeg failed, " + last, named.string());
}

}  // namespace

app::Size filmSize(app::Size screen, std::string_view format) {
    return format.ends_with("gif") ? screen
                                   : app::Size{screen.width / 2 * 2, screen.height / 2 * 2};
}

bool plays(const fs::path& film) {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    pid_t process = 0;
    const int error = spawn(process,
                            {"ffmpeg", "-nostdin", "-abort_on", "empty_output", "-i",
                             "file:" + film.string(), "-frames:v", "1", "-f", "null", "-"},
                            nothing, nothing);
    close(nothing);
    return error == 0 && hasSucceeded(process);
}

Encoder::Encoder(const fs::path& film, fs::path namedFilm, app::Size size,
                 std::optional<int> framesPerSecond)
    : named(std::move(namedFilm)), messages(std::tmpfile()) {
    std::array<int, 2> pipe{};
    if (!messages || pipe2(pipe.data(), O_CLOEXEC) != 0) {
        throw systemFailure("cannot start ffmpeg", errno);
    }
    const int error =
        spawn(process, commandLine(film, size, framesPerSecond), pipe[0], fileno(messages.get()));
    close(pipe[0]);
    frames = pipe[1];
    if (error != 0) {
        close(frames);
        throw systemFailure("cannot start ffmpeg", error);
    }
}

Encoder::~Encoder() {
    if (process != 0) {
        close(frames);
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
}

void Encoder::add(const hostkit::Image& frame) {
    const std::uint8_t* next = frame.rgba.data();
    std::size_t left = frame.rgba.size();
    while (left > 0) {
        const ssize_t written = write(frames, next, left);
        if (written < 0 && errno != EINTR) {
            const int error = errno;
            finish();  // throws with ffmpeg's own message if ffmpeg has failed
            throw systemFailure("cannot send a frame to ffmpeg", error);
        }
        next += written > 0 ? written : 0;
        left -= written > 0 ? static_cast<std::size_t>(written) : 0;
    }
}

void Encoder::finish() {
    close(frames);
    if (!hasSucceeded(std::exchange(process, 0))) {
        throw reportedFailure(messages.get(), named);
    }
}

}  // namespace player
