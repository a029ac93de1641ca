// The settings panel: a control for every setting, and a button for every command.

import GUI, { type Controller } from "lil-gui";
import type { Command } from "./command";
import { inkPalette, settingFields, type Ink } from "../../build/web/settings";
import { FrameTimeChart } from "./frame_time_chart";
import { PaintingChooser } from "./painting_chooser";
import type { Player } from "./player";
import type { PresetChooser } from "./preset_chooser";

const groups = ["Water", "Light", "Ink"] as const;

export class Panel {
    private readonly gui: GUI;
    private readonly preset: { name: string } = { name: "" };
    private readonly presetControl: Controller;
    private readonly paintings: PaintingChooser;
    /** Toggle buttons with their states. */
    private readonly toggles: [Element | null, () => boolean][] = [];

    constructor(
        private readonly container: HTMLElement,
        private readonly button: HTMLButtonElement,
        private readonly player: Player,
        private readonly presets: PresetChooser,
        /** Commands by the folder of the panel that has their buttons. */
        private readonly folders: Record<string, Command[]>,
    ) {
        this.gui = new GUI({ container, title: "Velmora", width: 320 });
        this.gui.$title.setAttribute("aria-label", "Close the settings");
        this.paintings = new PaintingChooser(player);
        this.presetControl = this.addPresets();
        groups.forEach((group) => this.addGroup(group));
        for (const [folder, commands] of Object.entries(folders)) {
            this.addCommandFolder(folder, commands);
        }
        const chart = new FrameTimeChart(player);
        this.gui.$children.append(chart.element);
        setInterval(() => this.isOpen && chart.update(), 500);
        // Polls the states, because a recording, for example, may end without a click.
        setInterval(() => this.isOpen && this.showToggles(), 100);
        this.gui.onChange(({ controller }: { controller: Controller }) => {
            // The list of presets first applies the preset, which then updates the panel.
            if (controller !== this.presetControl) {
                this.changed();
            }
        });
        button.addEventListener("click", () => this.toggle());
        this.gui.$title.addEventListener("click", () => this.toggle(false));
        this.gui.onOpenClose((gui: GUI) => gui === this.gui && gui.open());
    }

    get isOpen(): boolean {
        return !this.container.hidden;
    }

    toggle(open = !this.isOpen): void {
        this.container.hidden = !open;
        this.button.setAttribute("aria-expanded", String(open));
        if (open) {
            this.update();
            this.container.querySelector<HTMLElement>("button, select, input")?.focus({ preventScroll: true });
        } else {
            this.button.focus({ preventScroll: true });
        }
    }

    /** Shows the current values. */
    update(): void {
        if (!this.isOpen) {
            return;
        }
        this.listPresets();
        this.showToggles();
        this.paintings.update();
        this.gui.controllersRecursive().forEach((controller) => controller.updateDisplay());
    }

    private changed(): void {
        this.player.noteInput();
        this.listPresets();
        this.showToggles();
    }

    private showToggles(): void {
        this.toggles.forEach(([button, isOn]) => button?.setAttribute("aria-pressed", String(isOn())));
    }

    private addPresets(): Controller {
        const folder = this.addFolder("Preset");
        const list = folder.add(this.preset, "name", [] as string[]).name("preset");
        list.onChange((name: string) => this.presets.choose(name));
        this.addButtons(folder, this.folders["Preset"] ?? []);
        return list;
    }

    /** Fills the list of presets and selects the current one. */
    private listPresets(): void {
        const { name, names } = this.presets;
        this.preset.name = name;
        this.presetControl.options(names.includes(name) ? names : [name, ...names]);
    }

    private addFolder(name: string): GUI {
        const folder = this.gui.addFolder(name);
        folder.$title.setAttribute("aria-label", name); // the visible title also has an arrow
        return folder;
    }

    private addGroup(group: (typeof groups)[number]): void {
        const folder = this.addFolder(group).close();
        if (group === "Ink") {
            this.addInk(folder);
        }
        for (const field of settingFields) {
            if (field.group === group) {
                this.addSetting(folder, field);
            }
        }
    }

    private addSetting(folder: GUI, field: (typeof settingFields)[number]): void {
        const { settings } = this.player;
        const control =
            field.kind === "switch"
                ? folder.add(settings, field.name)
                : folder.add(settings, field.name, field.min, field.max, field.kind === "count" ? 1 : 0.001);
        control.name(field.label).domElement.title = field.hint;
        control.domElement.querySelector("input")?.setAttribute("aria-description", field.hint);
    }

    private addInk(folder: GUI): void {
        folder.addColor(this.player.settings, "ink").name("colour");
        const swatches = document.createElement("div");
        swatches.className = "swatches";
        for (const [name, ink] of Object.entries(inkPalette)) {
            const swatch = document.createElement("button");
            swatch.type = "button";
            swatch.title = name;
            swatch.setAttribute("aria-label", `${name} ink`);
            swatch.style.background = `rgb(${ink.map((part) => Math.round(255 * part)).join(" ")})`;
            swatch.addEventListener("click", () => this.chooseInk(ink));
            swatches.append(swatch);
        }
        folder.$children.append(swatches);
    }

    private chooseInk(ink: Ink): void {
        this.player.settings.ink = [...ink];
        this.update();
        this.changed();
    }

    private addCommandFolder(name: string, commands: Command[]): void {
        if (name !== "Preset") {
            const folder = this.addFolder(name).close();
            if (name === "Background") {
                folder.$children.append(this.paintings.element);
            }
            this.addButtons(folder, commands);
        }
    }

    private addButtons(folder: GUI, commands: Command[]): void {
        for (const { keyName, label, isOn, ...command } of commands) {
            const control = folder.add(command, "run").name(label);
            control.domElement.title = keyName ? `${label} (${keyName})` : label;
            if (isOn) {
                this.toggles.push([control.domElement.querySelector("button"), isOn]);
            }
        }
    }
}
