#include "player/window/file_browser.h"

#include <imgui.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <system_error>
#include <tuple>
#include <utility>

#include "app/text.h"

namespace player {
namespace {

namespace fs = std::filesystem;

constexpr const char* title = "Open a picture, a preset or a gesture";
/// Fractions of the window's width and height that the pop-up covers.
constexpr float widthPart = 0.9f;
constexpr float heightPart = 0.7f;

bool isReadable(const fs::path& file) {
    const std::string extension = lowerExtension(file);
    constexpr const char* readable[] = {".png", ".jpg",  ".jpeg",   ".webp",
                                        ".gif", ".json", ".gesture"};
    return std::ranges::find(readable, extension) != std::end(readable);
}

/// Returns the folder "Pictures" in the home folder. If it does not exist, returns the home folder or, if there is
/// none, the current folder.
fs::path picturesFolder() {
    std::error_code ignored;
    const char* home = std::getenv("HOME");
    fs::path pictures = fs::path(home == nullptr ? "" : home) / "Pictures";
    if (fs::is_directory(pictures, ignored)) {
        return pictures;
    }
    return home != nullptr ? fs::path(home) : fs::current_path(ignored);
}

}  // namespace

std::string lowerExtension(const fs::path& file) {
    std::string extension = file.extension().string();
    for (char& character : extension) {
        const bool isUpper = character >= 'A' && character <= 'Z';
        character = static_cast<char>(isUpper ? character - 'A' + 'a' : character);
    }
    return extension;
}

FileBrowser::FileBrowser(const fs::path& first) {
    folder = first.empty() ? picturesFolder() : first;
}

void FileBrowser::open() {
    list();
    opening = true;
}

/// Lists the folder. Hides files that the player cannot open, and names that start with a dot.
void FileBrowser::list() {
    entries.clear();
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
        const std::string name = entry.path().filename().string();
        const bool isFolder = entry.is_directory(ignored);
        if (!name.starts_with('.') && (isFolder || isReadable(entry.path()))) {
            entries.push_back(
                {app::shortened(name) + (isFolder ? "/" : ""), entry.path(), isFolder});
        }
    }
    std::ranges::sort(entries, [](const Entry& one, const Entry& other) {
        return std::tuple(!one.isFolder, one.path) < std::tuple(!other.isFolder, other.path);
    });
    if (folder.has_relative_path()) {
        entries.insert(entries.begin(), {"../", folder.parent_path(), true});
    }
}

void FileBrowser::draw(Requests& requests) {
    if (std::exchange(opening, false)) {
        ImGui::OpenPopup("files");
    }
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos(ImVec2(screen.x / 2, screen.y / 2), ImGuiCond_Always,
                            ImVec2(0.5f, 0.5f));
    ImGui::SetNextWindowSize(ImVec2(widthPart * screen.x, heightPart * screen.y));
    shown = ImGui::BeginPopup("files");
    if (shown) {
        ImGui::PushTextWrapPos(0.0f);
        ImGui::TextUnformatted(title);
        ImGui::TextDisabled("%s", app::oneLine(folder.string()).c_str());
        ImGui::PopTextWrapPos();
        ImGui::Separator();
        if (ImGui::BeginChild("entries")) {
            drawEntries(requests);
        }
        ImGui::EndChild();
        ImGui::EndPopup();
    }
}

void FileBrowser::drawEntries(Requests& requests) {
    const Entry* chosen = nullptr;
    for (const Entry& entry : entries) {
        ImGui::PushID(entry.path.c_str());
        if (ImGui::Selectable(entry.label.c_str(), false, ImGuiSelectableFlags_DontClosePopups)) {
            chosen = &entry;
        }
        ImGui::PopID();
    }
    if (chosen == nullptr) {
        return;
    }
    if (chosen->isFolder) {
        folder = fs::path(chosen->path);
        list();
        ImGui::SetScrollY(0.0f);
    } else {
        requests.files.push_back(chosen->path);
        ImGui::CloseCurrentPopup();
    }
}

}  // namespace player
