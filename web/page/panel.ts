// The settings panel, with a control for every setting and buttons for the commands.

import { inkPalette, settingFields, sharedTexts } from "../../build/web/settings";
import type { Command } from "./command";
import { hexOf, make, makeButtons, makeColor, makeSection, makeSlider, makeSwitch, type Control } from "./controls";
import { FrameTimeChart } from "./frame_time_chart";
import { PictureChooser } from "./picture_chooser";
import type { Player } from "./player";
import type { PresetChooser } from "./preset_chooser";
import { PresetGrid } from "./preset_grid";

export class Panel {
    private readonly controls: Control[] = [];
    private readonly buttons: Control[] = [];
    private readonly chart: FrameTimeChart;
    /** Element that had the focus when the panel was opened. */
    private focusedBefore: Element | null = null;

    constructor(
        private readonly container: HTMLElement,
        private readonly button: HTMLButtonElement,
        private readonly player: Player,
        private readonly presets: PresetChooser,
        /** Commands that have a button, grouped by the heading of their section. The sections are in panel order. */
        commands: Record<string, Command[]>,
    ) {
        this.chart = new FrameTimeChart(player);
        const sections = Object.keys(commands).map((name) => {
            const controls = this.controlsOf(name);
            const buttons = makeButtons(commands[name] ?? []);
            this.controls.push(...controls);
            this.buttons.push(buttons);
            const children = [...controls, buttons].map((control) => control.element);
            return makeSection(name, name === sharedTexts.presetSection, children);
        });
        container.append(this.makeHeader(), make("div", { className: "sections" }, ...sections));
        button.addEventListener("click", () => this.toggle());
        setInterval(() => this.isOpen && this.chart.update(), 500);
        // Polls the states of the buttons, because a recording, for example, may end without a click.
        setInterval(() => this.isOpen && this.updateButtons(), 100);
    }

    get isOpen(): boolean {
        return !this.container.hidden;
    }

    toggle(open = !this.isOpen): void {
        if (open === this.isOpen) {
            return;
        }
        this.container.hidden = !open;
        this.button.setAttribute("aria-expanded", String(open));
        if (open) {
            this.focusedBefore = document.activeElement;
            this.update();
            this.container.querySelector("button")?.focus({ preventScroll: true });
        } else {
            const target = this.focusedBefore === this.button ? this.button : this.player.canvas;
            target.focus({ preventScroll: true });
        }
    }

    /** Shows the current values. */
    update(): void {
        if (this.isOpen) {
            this.controls.forEach((control) => control.update());
            this.updateButtons();
        }
    }

    private updateButtons(): void {
        this.buttons.forEach((control) => control.update());
    }

    private makeHeader(): HTMLElement {
        const close = make("button", { type: "button", className: "close", ariaLabel: "Close settings" }, "×");
        close.addEventListener("click", () => this.toggle(false));
        return make("header", {}, make("h2", {}, "Settings"), close);
    }

    /** Returns the controls above the buttons of a section. */
    private controlsOf(section: string): Control[] {
        // The setting `secondBackground` already has a button, because it is also a command.
        const fields = settingFields.filter(({ name, group }) => group === section && name !== "secondBackground");
        const settings = fields.map((field) => this.makeSetting(field));
        switch (section) {
            case sharedTexts.presetSection:
                return [new PresetGrid(this.presets)];
            case "Picture":
                return [new PictureChooser(this.player, this.presets), ...settings];
            case "Ink":
                return [...this.makeInk(), ...settings];
            case sharedTexts.developerSection:
                return [{ element: this.chart.element, update: () => {} }];
            default:
                return settings;
        }
    }

    private makeSetting(field: (typeof settingFields)[number]): Control {
        const { settings } = this.player;
        if (field.kind === "switch") {
            const { name, label, hint } = field;
            const set = (on: boolean) => {
                settings[name] = on;
                this.presets.noteChange();
            };
            return makeSwitch(label, hint, () => settings[name], set);
        }
        const { name } = field;
        const set = (value: number) => {
            settings[name] = value;
            this.presets.noteChange();
        };
        return makeSlider(field, () => settings[name], set);
    }

    /** Returns a colour field, and a row of buttons for the inks of the palette. */
    private makeInk(): Control[] {
        const { settings } = this.player;
        const choose = (ink: typeof settings.ink) => {
            settings.ink = [...ink];
            this.presets.noteChange();
        };
        const swatches = Object.entries(inkPalette).map(([name, ink]) => {
            const swatch = make("button", { type: "button", title: name, ariaLabel: `${name} ink` });
            swatch.style.background = hexOf(ink);
            swatch.addEventListener("click", () => choose(ink));
            return swatch;
        });
        const row = make("div", { className: "swatches" }, ...swatches);
        return [makeColor("Colour", () => settings.ink, choose), { element: row, update: () => {} }];
    }
}
