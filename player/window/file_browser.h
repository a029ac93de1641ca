#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "player/window/requests.h"

namespace player {

/// Returns the extension of a file with Latin letters in lower case, for example ".json" for LOOK.JSON.
std::string lowerExtension(const std::filesystem::path& file);

/// Pop-up that lists the folders, pictures, presets and gestures of a folder.
class FileBrowser {
public:
    /// Sets the folder that is listed first. If `first` is empty, this is the user's folder of pictures.
    explicit FileBrowser(const std::filesystem::path& first);

    /// Opens the pop-up in the next frame.
    void open();
    bool isOpen() const { return opening || shown; }
    /// Returns true from the call of open() until the pop-up can receive keys.
    bool awaitsFocus() const { return opening; }
    /// Draws the pop-up into the current ImGui frame. Adds the file that the user chooses to `requests`.
    void draw(Requests& requests);

private:
    struct Entry {
        std::string label;
        std::filesystem::path path;
        bool isFolder;
    };

    void list();
    void drawEntries(Requests& requests);

    std::filesystem::path folder;
    /// Entries of the list: the parent folder, then folders, then files, each sorted by name.
    std::vector<Entry> entries;
    /// True from the call of open() until the next frame opens the pop-up.
    bool opening = false;
    /// True if the last frame showed the pop-up.
    bool shown = false;
};

}  // namespace player
