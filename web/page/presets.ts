// The presets: those that ship, and those that the visitor saved.

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
    /** The visitor's. One with a shipped preset's name stands in its place. */
    own: Preset[];
}

/** calm_pond.json is "calm pond". */
export function presetName(file: string, effect: Effect): string {
    return effect.presetName(file.replace(/\.json$/i, ""));
}

export function loadPresets(effect: Effect): PresetList {
    return { shipped: presetsOf(PRESETS, effect), own: presetsOf(readSaved(), effect) };
}

/** Returns a preset's text, as `Effect.readPreset` reads it. */
export function writePreset(settings: Settings): string {
    return JSON.stringify(settings, null, 4) + "\n";
}

export function allPresets({ shipped, own }: PresetList): Preset[] {
    const added = own.filter((preset) => !named(shipped, preset.name));
    return [...shipped.map((preset) => named(own, preset.name) ?? preset), ...added];
}

export function named(presets: Preset[], name: string): Preset | undefined {
    return presets.find((preset) => preset.name === name);
}

/** Lists a preset, also the next time the page is opened. */
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

export function isSame(one: Settings, other: Settings): boolean {
    return String(numbersOf(one)) === String(numbersOf(other));
}

function presetsOf(texts: Record<string, string>, effect: Effect): Preset[] {
    return Object.entries(texts).flatMap(([file, text]) => {
        try {
            return [{ name: presetName(file, effect), settings: effect.readPreset(text) }];
        } catch {
            return []; // a page of another time saved it, which had other settings
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
