#include "app/presets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <optional>
#include <type_traits>

#include "app/text.h"
#include "hostkit/host_error.h"
#include "hostkit/number_text.h"

namespace app {
namespace {

using Ink = std::array<float, 3>;

bool isBetween(double value, double min, double max) {
    return value >= min && value <= max;  // false for NaN
}

/// Returns the value if it is valid for the field, otherwise nothing. Compares the value with the decimal limits that
/// the error message shows. The limit 0.8 means the double 0.8 and not the float 0.8f, which is slightly larger.
template <class Value>
std::optional<Value> valueOf(const PresetValue& value, const SettingField<Value>& field) {
    if constexpr (std::is_same_v<Value, bool>) {
        const bool* const boolean = std::get_if<bool>(&value);
        return boolean ? std::optional(*boolean) : std::nullopt;
    } else {
        const double* const number = std::get_if<double>(&value);
        const bool valid = number &&
                           isBetween(*number, shortestNumber(static_cast<float>(field.min)),
                                     shortestNumber(static_cast<float>(field.max))) &&
                           (!std::is_integral_v<Value> || std::trunc(*number) == *number);
        return valid ? std::optional(static_cast<Value>(*number)) : std::nullopt;
    }
}

std::optional<Ink> inkOf(const PresetValue& value) {
    const auto* const channels = std::get_if<std::vector<double>>(&value);
    Ink ink{};
    if (!channels || channels->size() != ink.size() ||
        !std::all_of(channels->begin(), channels->end(),
                     [](double channel) { return isBetween(channel, 0.0, 1.0); })) {
        return std::nullopt;
    }
    std::transform(channels->begin(), channels->end(), ink.begin(),
                   [](double channel) { return static_cast<float>(channel); });
    return ink;
}

/// Describes the valid values of a field, for an error message.
template <class Value>
std::string validValues(const SettingField<Value>& field) {
    if constexpr (std::is_same_v<Value, bool>) {
        return "true or false";
    } else {
        return (std::is_integral_v<Value> ? "a whole number from " : "a number from ") +
               numberText(static_cast<float>(field.min)) + " to " +
               numberText(static_cast<float>(field.max));
    }
}

/// Assigns `value` to `setting`. Throws HostError if `value` is empty.
template <class Value>
void assign(Value& setting, const std::optional<Value>& value, const PresetMember& member,
            const std::string& expected) {
    if (!value) {
        throw hostkit::HostError(inQuotes(member.name) + " must be " + expected + ", not " +
                                 shortened(member.text));
    }
    setting = *value;
}

std::string settingNames() {
    std::string names = "ink";
    forEachField([&](const auto& field) { names.append(", ").append(field.name); });
    return names;
}

}  // namespace

void setSetting(Settings& settings, const PresetMember& member) {
    bool known = member.name == "ink";
    if (known) {
        assign(settings.ink, inkOf(member.value), member, "three numbers from 0 to 1");
    }
    forEachField([&](const auto& field) {
        if (member.name == field.name) {
            known = true;
            assign(settings.*field.member, valueOf(member.value, field), member,
                   validValues(field));
        }
    });
    if (!known) {
        throw hostkit::HostError("there is no setting " + inQuotes(member.name) +
                                 "; the settings are " + settingNames());
    }
}

std::string numberText(float value) {
    char digits[32];
    return {digits, hostkit::writeNumber(digits, std::end(digits), value).ptr};
}

double shortestNumber(float value) {
    const std::string text = numberText(value);
    double number = 0.0;
    hostkit::readNumber(text.data(), text.data() + text.size(), number);
    return number;
}

std::string presetName(std::string_view fileStem) {
    std::string name(fileStem);
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

}  // namespace app
