// Lists of presets: shipped presets, and presets that the user saved in the browser's storage.

import { numbersOf, type Settings } from "../../build/web/settings";
import type { Effect } from "./effect";

declare const PRESETS: Record<string, string>;

const storageName = "velmora presets";

export interface Preset {
    name: string;
    settings: Settings;
}

export interface PresetList {
    shipped: Preset[];
    /** Saved by the user. A saved preset replaces a shipped preset with the same name. */
    own: Preset[];
}

/** Returns the name of a preset file: "calm pond" for calm_pond.json. */
export function presetName(file: string, effect: Effect): string {
    return effect.presetName(file.replace(/\.json$/i, ""));
}

export function loadPresets(effect: Effect): PresetList {
    return { shipped: presetsOf(PRESETS, effect), own: presetsOf(readSaved(), effect) };
}

/** Returns the text of a preset file for `Effect.readPreset`. */
export function writePreset(settings: Settings): string {
    return JSON.stringify(settings, null, 4) + "\n";
}

export function allPresets({ shipped, own }: PresetList): Preset[] {
    const added = own.filter((preset) => !findPreset(shipped, preset.name));
    return [...shipped.map((preset) => findPreset(own, preset.name) ?? preset), ...added];
}

export function findPreset(presets: Preset[], name: string): Preset | undefined {
    return presets.find((preset) => preset.name === name);
}

/** Adds a preset to the list and to the browser's storage. */
export function addPreset(list: PresetList, name: string, settings: Settings): Preset {
    const added = { name, settings: structuredClone(settings) };
    list.own = [...list.own.filter((preset) => preset.name !== name), added];
    changeSaved((saved) => ({ ...saved, [name]: writePreset(added.settings) }));
    return added;
}

export function removePreset(list: PresetList, name: string, effect: Effect): void {
    list.own = list.own.filter((preset) => preset.name !== name);
    changeSaved((saved) => Object.fromEntries(Object.entries(saved).filter(([file]) => presetName(file, effect) !== name)));
}

export function isSame(a: Settings, b: Settings): boolean {
    return String(numbersOf(a)) === String(numbersOf(b));
}

function presetsOf(texts: Record<string, string>, effect: Effect): Preset[] {
    return Object.entries(texts).flatMap(([file, text]) => {
        try {
            return [{ name: presetName(file, effect), settings: effect.readPreset(text) }];
        } catch {
            return []; // saved by another version of the page with other settings
        }
    });
}

function readSaved(): Record<string, string> {
    try {
        return JSON.parse(localStorage.getItem(storageName) ?? "{}") as Record<string, string>;
    } catch {
        return {}; // the browser forbids storage
    }
}

function changeSaved(change: (saved: Record<string, string>) => Record<string, string>): void {
    try {
        localStorage.setItem(storageName, JSON.stringify(change(readSaved())));
    } catch {
        // Without storage, the change lasts until the page is closed.
    }
}
