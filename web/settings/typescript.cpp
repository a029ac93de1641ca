#include "web/settings/typescript.h"

#include <array>
#include <cstdio>
#include <type_traits>

#include "app/flow_lines.h"
#include "app/labels.h"
#include "app/presets.h"
#include "app/settings.h"
#include "app/size.h"

namespace web {
namespace {

/// Returns the concatenated strings.
template <class... Parts>
std::string joined(const Parts&... parts) {
    std::string text;
    (text.append(parts), ...);
    return text;
}

template <class Value>
constexpr bool isSwitch = std::is_same_v<Value, bool>;

std::string inkText(const std::array<float, 3>& ink) {
    return joined("[", app::numberText(ink[0]), ", ", app::numberText(ink[1]), ", ",
                  app::numberText(ink[2]), "]");
}

template <class Value>
std::string valueText(Value value) {
    if constexpr (isSwitch<Value>) {
        return value ? "true" : "false";
    } else {
        return app::numberText(static_cast<float>(value));
    }
}

/// Calls `write` with each setting except the ink, and with the setting's index in the array of numbers. Returns the
/// number of calls.
template <class Write>
int forEachIndex(Write write) {
    int index = 0;
    app::forEachField([&](const auto& field) { write(field, index++); });
    return index;
}

template <class Value>
std::string fieldText(const app::SettingField<Value>& field) {
    const std::string common =
        joined("    { name: ", literal(field.name), ", label: ", literal(field.label),
               ", group: ", literal(app::groupNames[static_cast<int>(field.group)]),
               ", hint: ", literal(field.hint));
    if constexpr (isSwitch<Value>) {
        return joined(common, ", kind: \"switch\" },\n");
    } else {
        const char* const kind = std::is_integral_v<Value> ? "count" : "number";
        return joined(common, ", kind: \"", kind, "\", min: ", valueText(field.min),
                      ", max: ", valueText(field.max), " },\n");
    }
}

std::string types() {
    std::string members, numbers, switches;
    forEachIndex([&]<class Value>(const app::SettingField<Value>& field, int) {
        members += joined("    ", field.name, isSwitch<Value> ? ": boolean;\n" : ": number;\n");
        (isSwitch<Value> ? switches : numbers) += joined(" | ", literal(field.name));
    });
    return joined(R"(/** Red, green and blue, 0 to 1. */
export type Ink = [number, number, number];

export interface Settings {
)",
                  members, R"(    ink: Ink;
}

interface Field {
    label: string;
    /** Heading of the panel section that contains the setting. */
    group: (typeof settingGroups)[number];
    hint: string;
}
export interface NumberField extends Field {
    kind: "number" | "count";
    name:)",
                  numbers, R"(;
    min: number;
    max: number;
}
export interface SwitchField extends Field {
    kind: "switch";
    name:)",
                  switches, ";\n}\n\n");
}

std::string conversions() {
    std::string toNumbers, toSettings;
    const int count =
        forEachIndex([&]<class Value>(const app::SettingField<Value>& field, int index) {
            const std::string value = joined("settings.", field.name);
            toNumbers += isSwitch<Value> ? joined("Number(", value, "), ") : joined(value, ", ");
            toSettings += joined("        ", field.name, ": numbers[", std::to_string(index),
                                 isSwitch<Value> ? "]! !== 0,\n" : "]!,\n");
        });
    std::string ink;
    for (int part = 0; part < 3; ++part) {
        ink += joined(part > 0 ? ", numbers[" : "numbers[", std::to_string(count + part), "]!");
    }
    return joined(
        "/** Length of the array that holds all settings. */\nexport const settingCount = ",
        std::to_string(count + 3),
        ";\n\nexport function numbersOf(settings: Settings): number[] {\n    return [", toNumbers,
        R"(...settings.ink];
}

/** Returns the settings of an array of `settingCount` numbers. */
export function settingsOf(numbers: ArrayLike<number>): Settings {
    return {
)",
        toSettings, "        ink: [", ink, "],\n    };\n}\n\n");
}

std::string defaults() {
    const app::Settings settings;
    std::string members;
    forEachIndex([&](const auto& field, int) {
        members += joined("    ", field.name, ": ", valueText(settings.*field.member), ",\n");
    });
    return joined("export const defaultSettings: Settings = {\n", members,
                  "    ink: ", inkText(settings.ink), ",\n};\n\n");
}

std::string fields() {
    std::string all;
    forEachIndex([&](const auto& field, int) { all += fieldText(field); });
    return joined("export const settingFields: readonly (NumberField | SwitchField)[] = [\n", all,
                  "];\n\n");
}

/// Returns a table of the min and max of each numeric setting. The table has no labels, so that the custom element,
/// which has no panel, can be bundled without the panel's labels.
std::string ranges() {
    std::string all;
    forEachIndex([&]<class Value>(const app::SettingField<Value>& field, int) {
        if constexpr (!isSwitch<Value>) {
            all +=
                joined("    ", field.name, ": [", valueText(field.min), ", ", valueText(field.max),
                       std::is_integral_v<Value> ? ", true],\n" : ", false],\n");
        }
    });
    return joined(
        "/** Minimum and maximum of each number, and true if it must be a whole number. */\n"
        "export const numberRanges: Readonly<Record<NumberField[\"name\"], readonly "
        "[min: number, max: number, isWhole: boolean]>> = {\n",
        all, "};\n\n");
}

/// Returns the headings of the panel's sections.
std::string groups() {
    std::string names;
    for (const char* const name : app::groupNames) {
        names += joined(names.empty() ? "" : ", ", literal(name));
    }
    return joined("export const settingGroups = [", names, "] as const;\n\n");
}

/// Returns the style of the lines of the velocity overlay.
std::string flowLineStyle() {
    return joined(
        "/** Style of the velocity overlay: lengths in pixels, grey of the dots from 0 to 1. */\n",
        "export const flowLineStyle = { width: ", app::numberText(app::flowLineWidth),
        ", dotSide: ", app::numberText(app::flowDotSide),
        ", dotShade: ", app::numberText(app::flowDotShade), " };\n\n");
}

std::string resizeDelay() {
    return joined(
        "/** Milliseconds that a new size must last before the effect restarts at this size. */\n"
        "export const resizeDelay = ",
        std::to_string(app::resizeDelay.count()), ";\n\n");
}

std::string palette() {
    std::string inks;
    for (const app::NamedInk& ink : app::inkPalette) {
        inks += joined("    ", literal(ink.name), ": ", inkText(ink.color), ",\n");
    }
    return joined(
        "/** Inks of the palette by name. */\n"
        "export const inkPalette: Readonly<Record<string, Ink>> = {\n",
        inks, "};\n\n");
}

std::string labels() {
    std::string commands, texts;
    for (const app::CommandText& command : app::commandTexts) {
        commands += joined("    ", command.name, ": { label: ", literal(command.label),
                           ", description: ", literal(command.description), " },\n");
    }
    for (const app::SharedText& text : app::sharedTexts) {
        texts += joined("    ", text.name, ": ", literal(text.text), ",\n");
    }
    return joined(
        "/** Labels and descriptions of the commands that page and desktop window share. */\n"
        "export const commandTexts = {\n",
        commands,
        "};\n\n/** Headings and messages that page and desktop window share. */\n"
        "export const sharedTexts = {\n",
        texts, "};\n\n");
}

}  // namespace

std::string literal(std::string_view text) {
    std::string quoted(1, '"');
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            quoted.append(1, '\\').append(1, character);
        } else if (code < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", unsigned{code});
            quoted += escape;
        } else {
            quoted += character;
        }
    }
    return quoted.append(1, '"');
}

std::string settingsModule() {
    return joined("// Generated by the build from the tables of the application core in app/.\n\n",
                  types(), defaults(), fields(), ranges(), conversions(), palette(), groups(),
                  labels(), flowLineStyle(), resizeDelay(),
                  "export const presetMustBeObject = ", literal(app::presetMustBeObject), ";\n");
}

}  // namespace web
