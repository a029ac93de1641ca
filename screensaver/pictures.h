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

/// Returns the plain picture that replaces a missing one.
hostkit::Image plainPicture();

/// The pictures under the water: one file, the files of a folder in random order, or pictures of xscreensaver-getimage.
/// Loads them on a thread of its own, so that the water does not stall.
class Pictures {
public:
    /// Takes the file or the folder. If `source` is empty, xscreensaver-getimage chooses the pictures for the window.
    Pictures(const std::filesystem::path& source, unsigned long window);
    /// Cancels a load in progress.
    ~Pictures();
    Pictures(const Pictures&) = delete;
    Pictures& operator=(const Pictures&) = delete;

    /// Starts to load the next picture. Does nothing while a picture is loading, or if the only picture is loaded.
    void startNext();
    /// Returns the picture that `startNext` has loaded. Returns nothing while it is loading.
    std::optional<hostkit::Image> take();
    bool isLoading() const { return loading.valid(); }

private:
    hostkit::Image loadNext();
    std::optional<hostkit::Image> loadFile();

    /// Window for xscreensaver-getimage. 0: the pictures are files.
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
