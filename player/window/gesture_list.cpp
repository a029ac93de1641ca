#include "player/window/gesture_list.h"

#include <imgui.h>

#include <algorithm>
#include <cfloat>
#include <system_error>
#include <vector>

#include "app/presets.h"

namespace player {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> gesturesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
        if (entry.path().extension() == ".gesture") {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

void drawGestures(const fs::path& folder, Requests& requests) {
    for (const fs::path& file : gesturesIn(folder)) {
        ImGui::PushID(file.c_str());
        if (ImGui::Selectable(app::presetName(file.stem().string()).c_str())) {
            requests.files.push_back(file);
        }
        ImGui::PopID();
    }
}

}  // namespace

void drawGestureList(const fs::path& recordedIn, Requests& requests) {
    ImGui::SetNextItemWidth(-FLT_MIN);
    if (ImGui::BeginCombo("##gestures", "Play a gesture")) {
        drawGestures(recordedIn, requests);
        drawGestures(VELMORA_GESTURES, requests);
        ImGui::EndCombo();
    }
}

}  // namespace player
