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

/// Returns the value if the field takes it. The limits are those that a message shows: 0.8, not the float next to it.
template <class Value>
std::optional<Value> valueOf(const PresetValue& value, const SettingField<Value>& field) {
    if constexpr (std::is_same_v<Value, bool>) {
        const bool* const given = std::get_if<bool>(&value);
        return given ? std::optional(*given) : std::nullopt;
    } else {
        const double* const given = std::get_if<double>(&value);
        const bool fits = given &&
                          isBetween(*given, shortestNumber(static_cast<float>(field.min)),
                                    shortestNumber(static_cast<float>(field.max))) &&
                          (!std::is_integral_v<Value> || std::trunc(*given) == *given);
        return fits ? std::optional(static_cast<Value>(*given)) : std::nullopt;
    }
}

std::optional<Ink> inkOf(const PresetValue& value) {
    const auto* const given = std::get_if<std::vector<double>>(&value);
    Ink ink{};
    if (!given || given->size() != ink.size() ||
        !std::all_of(given->begin(), given->end(),
                     [](double part) { return isBetween(part, 0.0, 1.0); })) {
        return std::nullopt;
    }
    std::transform(given->begin(), given->end(), ink.begin(),
                   [](double part) { return static_cast<float>(part); });
    return ink;
}

template <class Value>
std::string rangeOf(const SettingField<Value>& field) {
    if constexpr (std::is_same_v<Value, bool>) {
        return "true or false";
    } else {
        return (std::is_integral_v<Value> ? "a whole number from " : "a number from ") +
               numberText(static_cast<float>(field.min)) + " to " +
               numberText(static_cast<float>(field.max));
    }
}

template <class Value>
void take(Value& setting, const std::optional<Value>& value, const PresetMember& member,
          const std::string& expected) {
    if (!value) {
        throw hostkit::HostError(inQuotes(member.name) + " must be " + expected + ", not " +
                                 shortened(member.text));
    }
    setting = *value;
}

std::string knownNames() {
    std::string names = "ink";
    forEachField([&](const auto& field) { names.append(", ").append(field.name); });
    return names;
}

}  // namespace

void setSetting(Settings& settings, const PresetMember& member) {
    bool known = member.name == "ink";
    if (known) {
        take(settings.ink, inkOf(member.value), member, "three numbers from 0 to 1");
    }
    forEachField([&](const auto& field) {
        if (member.name == field.name) {
            known = true;
            take(settings.*field.member, valueOf(member.value, field), member, rangeOf(field));
        }
    });
    if (!known) {
        throw hostkit::HostError("there is no setting " + inQuotes(member.name) + ", only " +
                                 knownNames());
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
