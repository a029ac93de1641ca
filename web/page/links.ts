// Writes settings into the fragment of a link, for example #look&damping=0.91&ink=1,0.35,0.35, and reads them back. The
// fragment can also have the part `clean`, which hides the controls.

import { defaultSettings, settingFields, type Settings } from "../../build/web/settings";

const names: readonly string[] = [...settingFields.map((field) => field.name), "ink"];

/** Returns the page's URL with a fragment that lists the settings that differ from their defaults. */
export function linkOf(settings: Settings, page: string): string {
    const texts = Object.entries(settings).map(([name, value]) => `&${name}=${String(value)}`);
    const defaults = new Set(Object.entries(defaultSettings).map(([name, value]) => `&${name}=${String(value)}`));
    return `${page.replace(/#.*/, "")}#look${texts.filter((text) => !defaults.has(text)).join("")}`;
}

/**
 * Returns the preset in a fragment as JSON text, or undefined if there is none. Ignores parts that are not settings,
 * such as parameters that other sites add to links. Also reads links of earlier versions, where `look=` holds a whole
 * preset.
 */
export function presetInLink(fragment: string): string | undefined {
    const parts = fragment.slice(1).split("&");
    const look = parts.find((part) => /^look(=|$)/.test(part));
    if (look === undefined) {
        return undefined;
    }
    return look === "look" ? JSON.stringify(presetOf(parts)) : decode(look.slice("look=".length));
}

/** Returns the part of a fragment that stays if its preset is removed: "#clean" if it hides the controls, else "". */
export function withoutPreset(fragment: string): string {
    return hidesControls(fragment) ? "#clean" : "";
}

/** Returns true if the part `clean` of a fragment hides the controls. */
export function hidesControls(fragment: string): boolean {
    return fragment.slice(1).split("&").includes("clean");
}

function presetOf(parts: string[]): Record<string, unknown> {
    const pairs = parts.map((part) => decode(part).split("="));
    const known = pairs.filter(([name = ""]) => names.includes(name));
    return Object.fromEntries(known.map(([name = "", text = ""]) => [name, valueOf(text)])) as Record<string, unknown>;
}

/**
 * Converts a text to a list of numbers, a boolean or a number. Returns any other text unchanged, so that
 * Effect.readPreset reports the text as invalid.
 */
function valueOf(text: string): unknown {
    if (text.includes(",")) {
        return text.split(",").map(valueOf);
    }
    const isNumber = text !== "" && Number.isFinite(Number(text));
    return isNumber ? Number(text) : text === "true" || (text === "false" ? false : text);
}

/** Decodes percent-encoded characters. Returns the text unchanged if its encoding is invalid. */
function decode(text: string): string {
    try {
        return decodeURIComponent(text);
    } catch {
        return text;
    }
}
