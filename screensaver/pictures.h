#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <future>
#include <optional>
#include <random>
#include <vector>

#include "hostkit/image.h"

namespace saver {

/// Returns the plain picture that replaces a missing picture.
hostkit::Image plainPicture();

/// The pictures under the water: one file, the files of a folder in random order, or pictures from
/// xscreensaver-getimage. A separate thread loads them, so that the water does not stall.
class Pictures {
public:
    /// Creates the list of pictures from a file or a folder. If `source` is empty, xscreensaver-getimage chooses the
    /// pictures for the window.
    Pictures(const std::filesystem::path& source, unsigned long window);
    /// Cancels a load in progress.
    ~Pictures();
    Pictures(const Pictures&) = delete;
    Pictures& operator=(const Pictures&) = delete;

    /// Starts to load the next picture. Does nothing if a picture is loading, or if the only picture is already loaded.
    void startNext();
    /// Returns the picture that `startNext` has loaded, or nothing while the picture is loading.
    std::optional<hostkit::Image> take();
    bool isLoading() const { return loading.valid(); }

private:
    hostkit::Image loadNext();
    std::optional<hostkit::Image> loadFile();

    /// Window for xscreensaver-getimage, or 0 if the pictures are files.
    unsigned long grabWindow;
    std::vector<std::filesystem::path> files;
    /// Index of the next file.
    std::size_t next = 0;
    std::mt19937 random{std::random_device{}()};
    bool started = false;
    std::atomic<bool> cancelled = false;
    std::future<hostkit::Image> loading;
};

}  // namespace saver
