// Reads the attributes of the element. An invalid value counts as missing, and writes one warning to the console.

import { defaultSettings, type Settings } from "../../build/web/settings";
import type { PointerMode, WaterState } from "./live_water";
import { acceptedValues, attributeOf, presetOf, settingNames, settingValue, type SettingName } from "./setting_values";

const pointerModes: readonly string[] = ["drag", "hover", "none", "capture"];
const qualities: readonly string[] = ["auto", "full"];
const minPixelRatio = 0.25;
const maxPixelRatio = 4;

/** Attributes that choose the settings and options of the water. */
export const stateAttributes = [
    "preset",
    ...settingNames.map(attributeOf),
    "pointer",
    "attract",
    "paused",
    "quality",
    "pixel-ratio",
];

const warnings = new Set<string>();

/** Writes a warning to the console. Writes it only once for each invalid value. */
function warn(attribute: string, value: string, accepted: string, used: string): void {
    const text = `velmora-water: ${attribute}="${value}" is not valid. Expected ${accepted}. ${used} is used instead.`;
    if (!warnings.has(text)) {
        warnings.add(text);
        console.warn(text);
    }
}

/** Returns true if a boolean attribute is on: it is present, and its value is not "false". */
function isOn(element: Element, attribute: string): boolean {
    return element.hasAttribute(attribute) && element.getAttribute(attribute) !== "false";
}

function oneOf<Value extends string>(element: Element, attribute: string, values: readonly string[]): Value {
    const value = element.getAttribute(attribute) ?? values[0]!;
    if (values.includes(value)) {
        return value as Value;
    }
    warn(attribute, value, values.join(", "), values[0]!);
    return values[0] as Value;
}

function pixelRatioOf(element: Element): number | undefined {
    const text = element.getAttribute("pixel-ratio");
    if (text === null) {
        return undefined;
    }
    const ratio = Number(text);
    if (text.trim() && ratio >= minPixelRatio && ratio <= maxPixelRatio) {
        return ratio;
    }
    warn("pixel-ratio", text, `a number from ${minPixelRatio} to ${maxPixelRatio}`, "The ratio of the screen");
    return undefined;
}

function presetSettings(element: Element): Partial<Settings> {
    const text = element.getAttribute("preset");
    try {
        return text ? presetOf(text) : {};
    } catch (error) {
        warn("preset", text ?? "", error instanceof Error ? error.message.replace(/^expected /, "") : "", "The default");
        return {};
    }
}

/** Returns the settings that the attributes choose. The attribute of a single setting has priority over the preset. */
export function settingsOf(element: Element): Settings {
    const settings = { ...structuredClone(defaultSettings), ...presetSettings(element) };
    for (const name of settingNames) {
        const attribute = attributeOf(name);
        const text = element.getAttribute(attribute);
        const value = text === null ? undefined : settingValue(name, text);
        if (value !== undefined) {
            Object.assign(settings, { [name]: value });
        } else if (text !== null) {
            warn(attribute, text, acceptedValues(name), valueText(name, settings));
        }
    }
    return settings;
}

function valueText(name: SettingName, settings: Settings): string {
    const value = settings[name];
    return Array.isArray(value) ? `rgb(${value.map((part) => Math.round(255 * part)).join(", ")})` : String(value);
}

/** Returns the options that the attributes choose, except the settings. */
export function stateOf(element: Element): Omit<WaterState, "settings"> {
    return {
        pointer: oneOf<PointerMode>(element, "pointer", pointerModes),
        attract: isOn(element, "attract"),
        paused: isOn(element, "paused"),
        quality: oneOf<"auto" | "full">(element, "quality", qualities),
        pixelRatio: pixelRatioOf(element),
    };
}
