#include "desktop/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>
#include <vector>

#include "desktop/failure.h"
#include "desktop/interrupt.h"

namespace desktop {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t maxBytes = std::size_t{512} << 20;
constexpr std::size_t blockSize = std::size_t{1} << 20;
constexpr mode_t permissions = 0666;  // before the umask

struct Descriptor {
    int number;
    explicit Descriptor(int opened) : number(opened) {}
    ~Descriptor() { close(number); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
};

std::string errorText(int error) {
    return std::generic_category().message(error);
}

Failure cannotWrite(const fs::path& file, int error) {
    return desktop::cannotWrite(file, std::error_code(error, std::generic_category()));
}

/// Calls a system function, and calls it again each time that a signal interrupts it. If the signal asks the program to
/// end, returns -1.
template <class Call>
auto retryInterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR && !isInterrupted()) {
        result = call();
    }
    return result;
}

}  // namespace

bool isFile(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored) && !fs::is_directory(path, ignored);
}

std::string readWhole(const fs::path& file, const std::string& kind) {
    const auto fail = [&](int error) {
        if (error == EINTR) {
            throw Failure("interrupted while reading", file.string());
        }
        throw Failure(error == ENOENT ? "no such " + kind
                                      : "cannot read the " + kind + ", " + errorText(error),
                      file.string());
    };
    const Descriptor input(
        retryInterrupted([&] { return open(file.c_str(), O_RDONLY | O_CLOEXEC); }));
    if (input.number < 0) {
        fail(errno);
    }
    std::string bytes;
    std::vector<char> block(blockSize);
    for (;;) {
        const ssize_t count =
            retryInterrupted([&] { return read(input.number, block.data(), block.size()); });
        if (count < 0) {
            fail(errno);
        }
        if (count == 0) {
            return bytes;
        }
        bytes.append(block.data(), static_cast<std::size_t>(count));
        if (bytes.size() > maxBytes) {
            throw Failure("the " + kind + " is larger than 512 MB", file.string());
        }
    }
}

void writeWhole(const fs::path& file, std::string_view bytes, const fs::path& named) {
    std::string name = file.string() + ".XXXXXX";
    const Descriptor output(mkostemp(name.data(), O_CLOEXEC));
    if (output.number < 0) {
        throw cannotWrite(named, errno);
    }
    const auto drop = [&](int error) {
        unlink(name.c_str());
        throw cannotWrite(named, error);
    };
    while (!bytes.empty()) {
        const ssize_t count = write(output.number, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            drop(errno);
        }
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    const mode_t mask = umask(0);
    umask(mask);
    if (fchmod(output.number, permissions & ~mask) != 0 ||
        rename(name.c_str(), file.c_str()) != 0) {
        drop(errno);
    }
}

bool createFile(const fs::path& file) {
    const Descriptor made(open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions));
    if (made.number < 0 && errno != EEXIST) {
        throw cannotWrite(file, errno);
    }
    return made.number >= 0;
}

}  // namespace desktop
