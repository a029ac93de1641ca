// Lists of presets: built-in presets, and presets that the user has saved in the browser's storage.

import { defaultSettings, numbersOf, sharedTexts, type Settings } from "../../build/web/settings";
import type { Effect } from "./effect";

declare const PRESETS: Record<string, string>;
/** Thumbnails as data URLs, by the name of the preset file. */
declare const THUMBNAILS: Record<string, string>;

const presetStorage = "velmora presets";
const thumbnailStorage = "velmora thumbnails";

export interface Preset {
    name: string;
    settings: Settings;
    /** URL of a square thumbnail, or undefined if the preset has none. */
    thumbnail?: string | undefined;
}

export interface PresetList {
    /** Presets that cannot be changed. The first one has the default settings. */
    builtIn: Preset[];
    /** Presets that the user has saved. Their names differ from those of the built-in presets. */
    own: Preset[];
}

export function loadPresets(effect: Effect): PresetList {
    const builtIn = Object.entries(PRESETS).map(([file, text]) => ({
        name: effect.presetName(file.replace(/\.json$/, "")),
        settings: effect.readPreset(text),
        thumbnail: THUMBNAILS[file],
    }));
    builtIn.unshift({ name: sharedTexts.defaultSettings, settings: defaultSettings, thumbnail: THUMBNAILS["default"] });
    return { builtIn, own: readOwn(effect) };
}

/** Returns the text of a preset file with these settings. `Effect.readPreset` reads it. */
export function writePreset(settings: Settings): string {
    return JSON.stringify(settings, null, 4) + "\n";
}

export function allPresets({ builtIn, own }: PresetList): Preset[] {
    return [...builtIn, ...own];
}

export function findPreset(presets: Preset[], name: string): Preset | undefined {
    return presets.find((preset) => preset.name.toLowerCase() === name.toLowerCase());
}

/**
 * Adds a preset to the user's presets. If another preset has the name, also one that another tab has saved, appends
 * " 2", " 3" and so on until the name is free. Replaces a preset of the user that has the same name and settings.
 */
export function addPreset(list: PresetList, name: string, settings: Settings, thumbnail?: string): Preset {
    let freeName = name;
    let existing = findPreset(allPresets(list), name);
    const isTaken = () =>
        existing ? !(list.own.includes(existing) && isSame(existing.settings, settings)) : isStored(freeName);
    for (let count = 2; isTaken(); ++count) {
        freeName = `${name} ${count}`;
        existing = findPreset(allPresets(list), freeName);
    }
    const added = {
        name: existing?.name ?? freeName, // keeps the case of the existing name, because the storage is case-sensitive
        settings: structuredClone(settings),
        thumbnail: thumbnail ?? existing?.thumbnail,
    };
    list.own = [...list.own.filter((preset) => preset !== existing), added];
    return added;
}

export function removePreset(list: PresetList, name: string): void {
    list.own = list.own.filter((preset) => preset.name !== name);
    changeStorage(name, {});
}

/** Saves a preset in the browser's storage. Returns false if the storage is full or not allowed. */
export function storePreset({ name, settings, thumbnail }: Preset): boolean {
    return changeStorage(name, { settings: writePreset(settings), thumbnail });
}

/** Returns true if the storage has a preset with this name. Another tab may have stored the preset. */
function isStored(name: string): boolean {
    return [...readStorage(presetStorage).keys()].some((stored) => stored.toLowerCase() === name.toLowerCase());
}

export function isSame(a: Settings, b: Settings): boolean {
    return String(numbersOf(a)) === String(numbersOf(b));
}

/** Returns the user's presets from the browser's storage. Leaves out entries that this version cannot read. */
function readOwn(effect: Effect): Preset[] {
    const thumbnails = readStorage(thumbnailStorage);
    return [...readStorage(presetStorage)].flatMap(([name, text]) => {
        try {
            return [{ name, settings: effect.readPreset(text), thumbnail: thumbnails.get(name) }];
        } catch {
            return [];
        }
    });
}

/**
 * Replaces the stored settings and thumbnail of a preset. An undefined text deletes the stored text. Returns true if the
 * settings are stored. Ignores a failure to store the thumbnail, because a preset is complete without a thumbnail.
 */
function changeStorage(name: string, texts: { settings?: string; thumbnail?: string | undefined }): boolean {
    const areSettingsStored = changeEntry(presetStorage, name, texts.settings);
    changeEntry(thumbnailStorage, name, texts.thumbnail);
    return areSettingsStored;
}

/**
 * Replaces or deletes the text with this name in an entry of the storage. Reads the entry again first, because other
 * tabs can have changed it. Returns false if the storage is full or not allowed.
 */
function changeEntry(entry: string, name: string, text: string | undefined): boolean {
    const stored = readStorage(entry);
    stored.delete(name);
    if (text) {
        stored.set(name, text);
    }
    try {
        localStorage.setItem(entry, JSON.stringify(Object.fromEntries(stored)));
        return true;
    } catch {
        return false;
    }
}

/** Returns the strings of a stored JSON object, or an empty map if there is no storage or the entry is damaged. */
function readStorage(entry: string): Map<string, string> {
    try {
        const stored: unknown = JSON.parse(localStorage.getItem(entry) ?? "{}");
        const entries = Object.entries(stored ?? {});
        return new Map(entries.filter((each): each is [string, string] => typeof each[1] === "string"));
    } catch {
        return new Map();
    }
}
