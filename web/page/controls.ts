// Controls of the panel. They are native form elements, so keyboard, touch and screen readers need no extra code.

import type { NumberField } from "../../build/web/settings";
import type { Command } from "./command";
import { hasKeys } from "./toast";

export interface Control {
    element: HTMLElement;
    /** Shows the current value. */
    update(): void;
}

/** Returns an element with the given properties and children. */
export function make<Tag extends keyof HTMLElementTagNameMap>(
    tag: Tag,
    properties: Partial<HTMLElementTagNameMap[Tag]> = {},
    ...children: (Node | string)[]
): HTMLElementTagNameMap[Tag] {
    const element = Object.assign(document.createElement(tag), properties);
    element.append(...children);
    return element;
}

/** Returns a section of the panel. A click on its heading opens or closes it. */
export function makeSection(name: string, isOpen: boolean, children: HTMLElement[]): HTMLElement {
    return make("details", { open: isOpen }, make("summary", {}, name), ...children);
}

/** Returns a slider and a number field that share a label. `set` is called only with numbers from `min` to `max`. */
export function makeSlider(field: NumberField, get: () => number, set: (value: number) => void): Control {
    const { name, label, hint, min, max } = field;
    const bounds = { min: String(min), max: String(max), step: String(stepOf(field)), ariaDescription: hint };
    const slider = make("input", { type: "range", id: `setting-${name}`, ...bounds });
    const number = make("input", { type: "number", ariaLabel: label, ...bounds });
    const update = () => {
        slider.value = String(get());
        if (document.activeElement !== number) {
            number.value = String(get()); // not while the user is typing a number
        }
    };
    slider.addEventListener("input", () => set(slider.valueAsNumber));
    number.addEventListener("change", () => {
        if (Number.isFinite(number.valueAsNumber)) {
            const value = Math.min(Math.max(number.valueAsNumber, min), max);
            set(field.kind === "count" ? Math.round(value) : value);
        }
        number.value = String(get());
    });
    const text = make("label", { htmlFor: slider.id }, label);
    return { element: make("div", { className: "setting", title: hint }, text, slider, number), update };
}

/** Returns the step of a slider: a power of ten that divides the range into at least a hundred steps. */
function stepOf({ kind, min, max }: NumberField): number {
    return kind === "count" ? 1 : Number((10 ** Math.floor(Math.log10((max - min) / 100))).toPrecision(1));
}

export function makeSwitch(label: string, hint: string, get: () => boolean, set: (on: boolean) => void): Control {
    const box = make("input", { type: "checkbox", ariaDescription: hint });
    box.addEventListener("change", () => set(box.checked));
    const element = make("label", { className: "setting", title: hint }, label, box);
    return { element, update: () => (box.checked = get()) };
}

/** Returns a control for a colour. Its values are red, green and blue from 0 to 1. */
export function makeColor<Color extends number[]>(label: string, get: () => Color, set: (color: Color) => void): Control {
    const input = make("input", { type: "color" });
    input.addEventListener("input", () => {
        const bytes = [1, 3, 5].map((at) => Number.parseInt(input.value.slice(at, at + 2), 16));
        set(bytes.map((byte) => Number((byte / 255).toFixed(4))) as Color); // few digits keep links and presets short
    });
    const element = make("label", { className: "setting" }, label, input);
    return { element, update: () => (input.value = hexOf(get())) };
}

export function hexOf(color: number[]): string {
    return `#${color.map((part) => Math.round(255 * part).toString(16).padStart(2, "0")).join("")}`;
}

/** Returns a row of buttons, one for each command. The button of a toggle shows whether the toggle is on. */
export function makeButtons(commands: Command[]): Control {
    const buttons = commands.map(({ label, description, keyName, run }) => {
        const button = make("button", { type: "button", title: description }, label);
        if (hasKeys && keyName) {
            button.title += ` (${keyName})`;
        }
        button.addEventListener("click", run);
        return button;
    });
    const update = () =>
        commands.forEach(({ isOn, isShown }, at) => {
            const button = buttons[at] as HTMLButtonElement;
            button.hidden = isShown?.() === false;
            button.ariaPressed = isOn ? String(isOn()) : null;
        });
    return { element: make("div", { className: "buttons" }, ...buttons), update };
}
