// Checks the values of settings that attributes, properties and presets contain.

import { defaultSettings, numberRanges, type Ink, type Settings } from "../../build/web/settings";
import presets from "velmora-presets";
import { inkOf } from "./css_color";

export type NumberName = keyof typeof numberRanges;
/** Names of the element's settings. `secondBackground` is missing, because the element has only one background. */
export type SettingName = Exclude<keyof Settings, "secondBackground">;

export const settingNames = (Object.keys(defaultSettings) as (keyof Settings)[]).filter(
    (name): name is SettingName => name !== "secondBackground",
);

/** Returns the name of the attribute of a property, for example "wave-speed" for waveSpeed. */
export function attributeOf(name: string): string {
    return name.replace(/[A-Z]/g, (letter) => `-${letter.toLowerCase()}`);
}

/** Returns the names of the shipped presets. */
export function presetNames(): string[] {
    return Object.keys(presets);
}

/** Describes the accepted values of a setting, for an error message. */
export function acceptedValues(name: SettingName): string {
    if (name === "ink") {
        return "a CSS colour";
    }
    if (name === "waterOnly") {
        return "true or false";
    }
    const [min, max, isWhole] = numberRanges[name];
    return `${isWhole ? "a whole number" : "a number"} from ${min} to ${max}`;
}

/**
 * Returns the valid value of a setting, or undefined. `value` is a value of JSON, the text of an attribute, or a CSS
 * colour.
 */
export function settingValue(name: SettingName, value: unknown): Settings[SettingName] | undefined {
    if (name === "ink") {
        return Array.isArray(value) ? inkOfChannels(value) : inkOf(String(value));
    }
    if (name === "waterOnly") {
        return typeof value === "boolean" ? value : { true: true, "": true, false: false }[String(value)];
    }
    const [min, max, isWhole] = numberRanges[name];
    const number = typeof value === "string" && value.trim() ? Number(value) : value;
    const isValid = typeof number === "number" && number >= min && number <= max && !(isWhole && number % 1);
    return isValid ? number : undefined;
}

/**
 * Returns the settings of a preset: a shipped name such as "calm pond" or "calm-pond", or JSON. If the preset is
 * invalid, throws an Error that names the accepted values.
 */
export function presetOf(text: string): Partial<Settings> {
    const shipped = presets[text.trim().replace(/[ -]/g, "_")];
    if (shipped) {
        return shipped;
    }
    if (!text.trim().startsWith("{")) {
        throw new Error(`expected ${presetNames().join(", ").replace(/_/g, "-")}, or the JSON object of a preset`);
    }
    return checkPreset(JSON.parse(text) as Record<string, unknown>);
}

function checkPreset(members: Record<string, unknown>): Partial<Settings> {
    const preset: Record<string, unknown> = {};
    for (const [name, value] of Object.entries(members)) {
        if (name === "secondBackground") {
            continue;
        }
        if (!settingNames.includes(name as SettingName)) {
            throw new Error(`there is no setting ${name}; the settings are ${settingNames.join(", ")}`);
        }
        preset[name] = settingValue(name as SettingName, value);
        if (preset[name] === undefined) {
            throw new Error(`${name} must be ${acceptedValues(name as SettingName)}`);
        }
    }
    return preset;
}

function inkOfChannels(channels: unknown[]): Ink | undefined {
    const areValid = channels.length === 3 && channels.every((part) => typeof part === "number" && part >= 0 && part <= 1);
    return areValid ? (channels as Ink) : undefined;
}
