// A look: every setting by its name, as presets and links keep it.

import type { SettingField } from "./effect";

export type Ink = [number, number, number];

export interface Look {
    [name: string]: number | boolean | Ink;
    ink: Ink;
}

/** What there is to set, and the ink at first. */
export interface Settings {
    fields: SettingField[];
    firstInk: Ink;
}

/** The shortest number that is this 32-bit float again: 0.97, not 0.9700000286102295. */
function shortest(value: number): number {
    for (let digits = 1; digits < 9; ++digits) {
        const short = Number(value.toPrecision(digits));
        if (Math.fround(short) === Math.fround(value)) {
            return short;
        }
    }
    return value;
}

export function firstLook({ fields, firstInk }: Settings): Look {
    const look: Look = { ink: [...firstInk] };
    for (const field of fields) {
        look[field.name] = field.kind === "switch" ? field.first !== 0 : field.first;
    }
    return look;
}

export function valuesOf(look: Look, fields: SettingField[]): number[] {
    return [...fields.map((field) => Number(look[field.name])), ...look.ink];
}

export function lookOf(values: number[], fields: SettingField[]): Look {
    const look: Look = { ink: values.slice(fields.length).map(shortest) as Ink };
    fields.forEach((field, at) => {
        const value = values[at] as number;
        look[field.name] = field.kind === "switch" ? value !== 0 : shortest(value);
    });
    return look;
}

/** A name or value from a file, short enough for a line. */
function quoted(value: unknown): string {
    const text = JSON.stringify(value) ?? String(value);
    return text.length > 40 ? text.slice(0, 40) + "…" : text;
}

function rangeOf(field: SettingField): string {
    const range = `from ${field.least} to ${field.most}`;
    return { switch: "true or false", count: `a whole number ${range}`, number: `a number ${range}` }[field.kind];
}

function fits(field: SettingField, value: unknown): boolean {
    if (field.kind === "switch") {
        return typeof value === "boolean";
    }
    const inRange = typeof value === "number" && value >= field.least && value <= field.most;
    return inRange && (field.kind === "number" || Number.isInteger(value));
}

function isInk(value: unknown): value is Ink {
    return (
        Array.isArray(value) &&
        value.length === 3 &&
        value.every((part) => typeof part === "number" && part >= 0 && part <= 1)
    );
}

/** A preset's text as a look; what it leaves out has its first value. Throws an Error that says what is wrong. */
export function parseLook(text: string, settings: Settings): Look {
    const { fields } = settings;
    let preset: unknown;
    try {
        preset = JSON.parse(text.replace(/^\uFEFF/, ""));
    } catch {
        throw new Error("this is no JSON");
    }
    if (typeof preset !== "object" || preset === null || Array.isArray(preset)) {
        throw new Error("a preset is a JSON object");
    }
    const look = firstLook(settings);
    for (const [name, value] of Object.entries(preset)) {
        const field = fields.find((one) => one.name === name);
        const expected = name === "ink" ? "three numbers from 0 to 1" : field && rangeOf(field);
        if (!expected) {
            const known = [...fields.map((one) => one.name), "ink"].join(", ");
            throw new Error(`there is no setting ${quoted(name)}; there are ${known}`);
        }
        if (field ? !fits(field, value) : !isInk(value)) {
            throw new Error(`${name} is to be ${expected}, not ${quoted(value)}`);
        }
        look[name] = value as Look[string];
    }
    return look;
}

export function writeLook(look: Look): string {
    return JSON.stringify(look, null, 4) + "\n";
}

/** The whole look in a link's fragment. */
export function linkOf(look: Look, page: string): string {
    return `${page.replace(/#.*/, "")}#look=${encodeURIComponent(JSON.stringify(look))}`;
}

/** The preset's text in a fragment; undefined for any other fragment. */
export function lookInLink(fragment: string): string | undefined {
    const found = /^#look=(.*)$/.exec(fragment);
    try {
        return found ? decodeURIComponent(found[1] as string) : undefined;
    } catch {
        return found?.[1];
    }
}
