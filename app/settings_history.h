#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <vector>

#include "app/frame_clock.h"
#include "app/settings.h"

namespace app {

/// Earlier settings of the user, for undo and redo.
class SettingsHistory {
public:
    explicit SettingsHistory(const Settings& initial) : states{initial} {}

    /// Notes the settings in force. A change is one step. Quick changes of the same setting, such as those of a dragged
    /// slider, are one step together. A change after an undo discards the steps that could be redone.
    void note(const Settings& settings, Clock::time_point now);
    /// Returns the settings before the last step, or nothing if there is none. The caller applies them.
    std::optional<Settings> undo();
    /// Returns the settings after the step that was undone last, or nothing if there is none.
    std::optional<Settings> redo();

private:
    /// One bit per setting.
    using Changes = std::bitset<32>;

    static Changes changesBetween(const Settings& before, const Settings& after);

    /// Settings after each step, oldest first.
    std::vector<Settings> states;
    /// Index of the settings in force.
    std::size_t current = 0;
    /// Settings that the last step changed. None after an undo or a redo, so that the next change is a new step.
    Changes lastChanges;
    Clock::time_point lastTime{};
};

}  // namespace app
