#include "player/encoder.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "player/failure.h"

namespace player {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> commandLine(const fs::path& film, int width, int height) {
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    return {
        "ffmpeg", "-hide_banner", "-loglevel", "error", "-y",
        // in: the frames as they are
        "-f", "rawvideo", "-pixel_format", "rgba", "-video_size", size, "-framerate", "60", "-i",
        "pipe:0",
        // halved colour rows and columns need even sizes, players expect the colours of HD video
        "-vf", "crop=trunc(iw/2)*2:trunc(ih/2)*2:0:0,scale=out_color_matrix=bt709", "-colorspace",
        "bt709", "-color_primaries", "bt709", "-color_trc", "bt709",
        // out: plays everywhere, and from the first byte on
        "-c:v", "libx264", "-preset", "fast", "-crf", "18", "-pix_fmt", "yuv420p", "-movflags",
        "+faststart", "file:" + film.string()};
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
    const int error = posix_spawnp(&process, argv.front(), &files, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

Failure systemFailure(const std::string& what, int error) {
    return Failure(what, std::generic_category().message(error));
}

std::string lastLine(std::FILE* file) {
    std::rewind(file);
    std::string last;
    std::array<char, 512> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), file) != nullptr) {
        last = std::string(line.data(), std::strcspn(line.data(), "\n"));
    }
    return last;
}

}  // namespace

Encoder::Encoder(fs::path filmFile, int width, int height)
    : film(std::move(filmFile)), messages(std::tmpfile()) {
    std::array<int, 2> pipe{};
    if (!messages || pipe2(pipe.data(), O_CLOEXEC) != 0) {
        throw systemFailure("cannot start ffmpeg", errno);
    }
    const int error =
        spawn(process, commandLine(film, width, height), pipe[0], fileno(messages.get()));
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
    int status = 0;
    waitpid(std::exchange(process, 0), &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw Failure("ffmpeg failed, " + lastLine(messages.get()), film.filename().string());
    }
}

}  // namespace player
