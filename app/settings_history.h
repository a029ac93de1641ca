#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <vector>

#include "app/frame_clock.h"
#include "app/settings.h"

namespace app {

/// Earlier settings, for undo and redo by the user.
class SettingsHistory {
public:
    explicit SettingsHistory(const Settings& initial) : states{initial} {}

    /// Adds the current settings to the history if they have changed. Quick changes of the same number or ink, for
    /// example by a dragged slider, count as one step. Each change of a switch is a separate step. A change after an
    /// undo discards the steps that could be redone.
    void note(const Settings& settings, Clock::time_point now);
    /// Returns the settings before the last step, or nothing if there is no such step. The caller applies them.
    std::optional<Settings> undo();
    /// Returns the settings after the step that was last undone, or nothing if there is no such step.
    std::optional<Settings> redo();

private:
    /// One bit per setting.
    using Changes = std::bitset<32>;

    static Changes changesBetween(const Settings& before, const Settings& after);

    /// Settings after each step, oldest first.
    std::vector<Settings> states;
    /// Index of the current settings in `states`.
    std::size_t current = 0;
    /// Settings that the last step changed. Empty after an undo or a redo, so that the next change starts a new step.
    Changes lastChanges;
    Clock::time_point lastTime{};
};

}  // namespace app
