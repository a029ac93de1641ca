// The presets: those that ship, and those that the visitor saved. Both have names as they are read, without a suffix.

import { parseLook, writeLook, type Look, type Settings } from "./look";

declare const PRESETS: Record<string, string>;

const storageName = "velmora presets";

export interface Preset {
    name: string;
    look: Look;
}

export interface PresetList {
    settings: Settings;
    shipped: Preset[];
    /** The visitor's. One with a shipped preset's name stands in its place. */
    own: Preset[];
}

/** calm_pond.json is "calm pond". */
export function presetName(file: string): string {
    return file.replace(/\.json$/i, "").replaceAll("_", " ");
}

export function loadPresets(settings: Settings): PresetList {
    return { settings, shipped: presetsOf(PRESETS, settings), own: presetsOf(readSaved(), settings) };
}

export function allPresets({ shipped, own }: PresetList): Preset[] {
    const added = own.filter((preset) => !named(shipped, preset.name));
    return [...shipped.map((preset) => named(own, preset.name) ?? preset), ...added];
}

export function named(presets: Preset[], name: string): Preset | undefined {
    return presets.find((preset) => preset.name === name);
}

/** Listed at once, and the next time the page is opened. */
export function addPreset(list: PresetList, name: string, look: Look): Preset {
    const added = { name, look: structuredClone(look) };
    list.own = [...list.own.filter((preset) => preset.name !== name), added];
    changeSaved((saved) => ({ ...saved, [name]: writeLook(added.look) }));
    return added;
}

export function removePreset(list: PresetList, name: string): void {
    list.own = list.own.filter((preset) => preset.name !== name);
    changeSaved((saved) => Object.fromEntries(Object.entries(saved).filter(([file]) => presetName(file) !== name)));
}

export function isSame(one: Look, other: Look): boolean {
    const parts = (look: Look) => JSON.stringify(Object.entries(look).sort());
    return parts(one) === parts(other);
}

function presetsOf(texts: Record<string, string>, settings: Settings): Preset[] {
    return Object.entries(texts).flatMap(([file, text]) => {
        try {
            return [{ name: presetName(file), look: parseLook(text, settings) }];
        } catch {
            return []; // saved by a page of another time, whose settings were others
        }
    });
}

function readSaved(): Record<string, string> {
    try {
        return JSON.parse(localStorage.getItem(storageName) ?? "{}") as Record<string, string>;
    } catch {
        return {}; // storage may be forbidden
    }
}

function changeSaved(change: (saved: Record<string, string>) => Record<string, string>): void {
    try {
        localStorage.setItem(storageName, JSON.stringify(change(readSaved())));
    } catch {
        // Then the change lasts as long as the page is open.
    }
}
