// The presets: those that ship, and those that the visitor saved.

import { parseLook, writeLook, type Look, type Settings } from "./look";

declare const PRESETS: Record<string, string>;

const storageName = "velmora presets";

export interface Preset {
    name: string;
    look: Look;
}

export interface PresetList {
    all: Preset[];
    settings: Settings;
}

/** calm_pond is "calm pond". */
export function presetName(file: string): string {
    return file.replace(/\.json$/i, "").replaceAll("_", " ");
}

function readSaved(): Record<string, string> {
    try {
        return JSON.parse(localStorage.getItem(storageName) ?? "{}") as Record<string, string>;
    } catch {
        return {}; // storage may be forbidden
    }
}

export function loadPresets(settings: Settings): PresetList {
    const list: PresetList = { all: [], settings };
    for (const [file, text] of Object.entries({ ...PRESETS, ...readSaved() })) {
        try {
            list.all.push({ name: presetName(file), look: parseLook(text, settings) });
        } catch {
            // Saved by a page of another time, whose settings were others.
        }
    }
    return list;
}

/** Listed at once, and the next time the page is opened. */
export function addPreset(list: PresetList, name: string, look: Look): Preset {
    const added = { name, look: structuredClone(look) };
    list.all = [...list.all.filter((preset) => preset.name !== name), added];
    try {
        localStorage.setItem(storageName, JSON.stringify({ ...readSaved(), [name]: writeLook(added.look) }));
    } catch {
        // Then it is kept as long as the page is open.
    }
    return added;
}

/** The preset that the look is, untouched. */
export function presetOf(list: PresetList, look: Look): Preset | undefined {
    const keys = (one: Look) => JSON.stringify(Object.entries(one).sort());
    return list.all.find((preset) => keys(preset.look) === keys(look));
}
