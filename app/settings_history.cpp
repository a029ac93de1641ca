#include "app/settings_history.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace app {
namespace {

/// Maximum time between two changes of a slider that count as one drag.
constexpr auto maxDragPause = std::chrono::seconds(1);
/// Maximum number of steps that the user can undo.
constexpr std::size_t maxSteps = 200;

/// Returns true if a switch has different states in the two settings. A switch cannot be dragged, so each change of a
/// switch is a separate step.
bool differInSwitch(const Settings& before, const Settings& after) {
    return std::any_of(std::begin(switchFields), std::end(switchFields), [&](const auto& field) {
        return before.*field.member != after.*field.member;
    });
}

}  // namespace

SettingsHistory::Changes SettingsHistory::changesBetween(const Settings& before,
                                                         const Settings& after) {
    Changes changes;
    std::size_t index = 0;
    forEachField(
        [&](const auto& field) { changes[index++] = before.*field.member != after.*field.member; });
    changes[index] = before.ink != after.ink;
    return changes;
}

void SettingsHistory::note(const Settings& settings, Clock::time_point now) {
    const Changes changes = changesBetween(states[current], settings);
    if (changes.none()) {
        return;
    }
    const bool continues = changes.count() == 1 && changes == lastChanges &&
                           now - lastTime < maxDragPause &&
                           !differInSwitch(states[current], settings);
    lastChanges = changes;
    lastTime = now;
    states.resize(current + 1);
    if (continues) {
        states.back() = settings;
        return;
    }
    states.push_back(settings);
    if (states.size() > maxSteps + 1) {
        states.erase(states.begin());
    }
    current = states.size() - 1;
}

std::optional<Settings> SettingsHistory::undo() {
    if (current == 0) {
        return std::nullopt;
    }
    lastChanges.reset();
    return states[--current];
}

std::optional<Settings> SettingsHistory::redo() {
    if (current + 1 == states.size()) {
        return std::nullopt;
    }
    lastChanges.reset();
    return states[++current];
}

}  // namespace app
