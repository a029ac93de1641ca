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

#include "player/failure.h"

namespace player {
namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

void append(Words& words, std::initializer_list<const char*> more) {
    words.insert(words.end(), more.begin(), more.end());
}

void appendTiming(Words& words, FilmTiming timing) {
    if (timing == FilmTiming::sixtyASecond) {
        append(words, {"-framerate", "60"});
    } else {
        // The rate is the fineness of the clock, in milliseconds, by which frames are stamped.
        append(words, {"-use_wallclock_as_timestamps", "1", "-framerate", "1000"});
    }
}

/// Halved colour rows and columns need even sizes, players expect the colours of HD video.
constexpr const char* videoColors =
    "crop=trunc(iw/2)*2:trunc(ih/2)*2:0:0,scale=out_color_matrix=bt709";

/// At most 25 frames a second, which all browsers keep. Of a window none twice: frames are stamped
/// when they are read, and one that was made twice would delay the next, which came twice again.
std::string gifFrames(FilmTiming timing) {
    return timing == FilmTiming::sixtyASecond
               ? "fps=25,"
               : "select='isnan(prev_selected_t)+gte(t-prev_selected_t,0.039)',";
}

/// Each frame has colours of its own, so that none waits in memory for the last.
constexpr const char* gifColors =
    "scale='min(iw,iw*480/max(iw,ih))':-1:flags=area,split[a][b];"
    "[a]palettegen=stats_mode=single[p];[b][p]paletteuse=new=1:dither=bayer";

void appendFormat(Words& words, const std::string& extension, FilmTiming timing) {
    if (extension == ".gif") {
        words.emplace_back("-filter_complex");
        words.push_back(gifFrames(timing) + gifColors);
        return;
    }
    append(words, {"-vf", videoColors, "-colorspace", "bt709", "-color_primaries", "bt709",
                   "-color_trc", "bt709", "-pix_fmt", "yuv420p"});
    if (extension == ".webm") {
        append(words, {"-c:v", "libvpx-vp9", "-deadline", "realtime", "-cpu-used", "6", "-row-mt",
                       "1", "-crf", "28", "-b:v", "0"});
    } else {  // plays everywhere, and from the first byte on
        append(words,
               {"-c:v", "libx264", "-preset", "fast", "-crf", "18", "-movflags", "+faststart"});
    }
}

Words commandLine(const fs::path& film, app::Size size, FilmTiming timing) {
    Words words = {"ffmpeg", "-hide_banner", "-loglevel",     "error", "-y",
                   "-f",     "rawvideo",     "-pixel_format", "rgba",  "-video_size"};
    words.push_back(std::to_string(size.width) + "x" + std::to_string(size.height));
    appendTiming(words, timing);
    append(words, {"-i", "pipe:0"});
    if (timing == FilmTiming::wallClock) {
        append(words, {"-vsync", "vfr"});
    }
    appendFormat(words, film.extension().string(), timing);
    words.push_back("file:" + film.string());
    return words;
}

/// Starts a program from the search path with the given stdin and stderr. 0 or an error number.
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
    // A process group of its own: what the terminal sends to the player's ends no encoder that has
    // a film to complete. And the signals that the player ignores are its own.
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

Failure systemFailure(const std::string& what, int error) {
    return Failure(what, std::generic_category().message(error));
}

/// The last line that says why.
std::string lastError(std::FILE* file) {
    std::rewind(file);
    std::string last;
    std::array<char, 512> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), file) != nullptr) {
        const std::string said(line.data(), std::strcspn(line.data(), "\n"));
        last = said.ends_with("-- ") ? last : said;
    }
    return last;
}

}  // namespace

Encoder::Encoder(fs::path filmFile, app::Size size, FilmTiming timing)
    : film(std::move(filmFile)), messages(std::tmpfile()) {
    std::array<int, 2> pipe{};
    if (!messages || pipe2(pipe.data(), O_CLOEXEC) != 0) {
        throw systemFailure("cannot start ffmpeg", errno);
    }
    const int error =
        spawn(process, commandLine(film, size, timing), pipe[0], fileno(messages.get()));
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

void Encoder::add(const hostkit::Picture& frame) {
    const std::uint8_t* next = frame.rgba.data();
    std::size_t left = frame.rgba.size();
    while (left > 0) {
        const ssize_t written = write(frames, next, left);
        if (written < 0 && errno != EINTR) {
            const int error = errno;
            finish();  // ffmpeg has ended and knows why
            throw systemFailure("cannot feed ffmpeg", error);
        }
        next += written > 0 ? written : 0;
        left -= written > 0 ? static_cast<std::size_t>(written) : 0;
    }
}

void Encoder::finish() {
    close(frames);
    const pid_t ending = std::exchange(process, 0);
    int status = 0;
    while (waitpid(ending, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw Failure("ffmpeg failed, " + lastError(messages.get()), film.filename().string());
    }
}

}  // namespace player
