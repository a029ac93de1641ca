// The panel behind the page's one button: every setting, and every command as a button.

import GUI, { type Controller } from "lil-gui";
import type { Command } from "./commands";
import type { SettingField } from "./effect";
import type { Ink, Look } from "./look";
import type { Looks } from "./looks";
import type { Player } from "./player";
import { presetOf } from "./presets";
import { Times } from "./times";

const groups = ["Water", "Light", "Ink"] as const;

export class Panel {
    private readonly gui: GUI;
    private readonly times: Times;
    private readonly preset: { name: string } = { name: "" };
    private presetControl!: Controller;

    constructor(
        private readonly place: HTMLElement,
        private readonly button: HTMLButtonElement,
        private readonly player: Player,
        private readonly looks: Looks,
        /** Buttons by the folder that they stand in. */
        private readonly tools: Record<string, Command[]>,
    ) {
        this.gui = new GUI({ container: place, title: "Velmora", width: 320 });
        this.addPresets();
        groups.forEach((group) => this.addGroup(group));
        for (const [folder, commands] of Object.entries(tools)) {
            this.addTools(folder, commands);
        }
        this.times = new Times(player);
        place.append(this.times.element);
        setInterval(() => this.isOpen && this.times.update(), 500);
        this.gui.onChange(() => this.changed());
        button.addEventListener("click", () => this.toggle());
        this.gui.$title.addEventListener("click", () => this.toggle(false));
        this.gui.onOpenClose((gui: GUI) => gui === this.gui && gui.open());
    }

    get isOpen(): boolean {
        return !this.place.hidden;
    }

    toggle(open = !this.isOpen): void {
        this.place.hidden = !open;
        this.button.setAttribute("aria-expanded", String(open));
        if (open) {
            this.update();
            this.place.querySelector<HTMLElement>("button, select, input")?.focus({ preventScroll: true });
        } else {
            this.button.focus({ preventScroll: true });
        }
    }

    /** Shows the values as they are now. */
    update(): void {
        if (!this.isOpen) {
            return;
        }
        this.listPresets();
        this.gui.controllersRecursive().forEach((controller) => controller.updateDisplay());
    }

    private changed(): void {
        this.player.userCame();
        this.listPresets();
    }

    private addPresets(): void {
        const folder = this.gui.addFolder("Preset");
        this.presetControl = this.choice(folder, []);
        this.addButtons(folder, this.tools["Preset"] ?? []);
    }

    /** The preset's name; with a mark where a setting differs from it. */
    private listPresets(): void {
        const { player } = this;
        const { presets } = this.looks;
        const found = presetOf(presets, player.look)?.name;
        const shown = found ?? (this.preset.name ? `${this.preset.name.replace(/ \*$/, "")} *` : "of your own");
        this.preset.name = shown;
        const names = presets.all.map((preset) => preset.name);
        this.presetControl = this.presetControl.options(names.includes(shown) ? names : [shown, ...names]);
        this.label(this.presetControl, "preset");
    }

    private choice(folder: GUI, names: string[]): Controller {
        return folder
            .add(this.preset, "name", names)
            .name("preset")
            .onChange((name: string) => this.looks.choose(name.replace(/ \*$/, "")));
    }

    private addGroup(group: (typeof groups)[number]): void {
        const folder = this.gui.addFolder(group).close();
        if (group === "Ink") {
            this.addInk(folder);
        }
        for (const field of this.player.effect.fields) {
            if (field.group === group) {
                this.addSetting(folder, field);
            }
        }
    }

    private addSetting(folder: GUI, field: SettingField): void {
        const look = this.player.look;
        const control =
            field.kind === "switch"
                ? folder.add(look, field.name)
                : folder.add(look, field.name, field.least, field.most, field.kind === "count" ? 1 : 0.001);
        this.label(control.name(field.words), field.hint);
    }

    private addInk(folder: GUI): void {
        const { look, effect } = this.player;
        this.label(folder.addColor(look, "ink").name("colour"));
        const swatches = document.createElement("div");
        swatches.className = "swatches";
        for (const [name, ink] of Object.entries(effect.palette)) {
            const swatch = document.createElement("button");
            swatch.type = "button";
            swatch.title = name;
            swatch.setAttribute("aria-label", `${name} ink`);
            swatch.style.background = `rgb(${ink.map((part) => Math.round(255 * part)).join(" ")})`;
            swatch.addEventListener("click", () => this.chooseInk(look, ink));
            swatches.append(swatch);
        }
        folder.$children.append(swatches);
    }

    private chooseInk(look: Look, ink: Ink): void {
        look.ink = [...ink];
        this.update();
        this.changed();
    }

    private addTools(name: string, commands: Command[]): void {
        if (name !== "Preset") {
            this.addButtons(this.gui.addFolder(name).close(), commands);
        }
    }

    private addButtons(folder: GUI, commands: Command[]): void {
        for (const command of commands) {
            const control = folder.add(command, "run").name(command.words);
            control.domElement.title = command.name ? `${command.words} (${command.name})` : command.words;
        }
    }

    private label(control: Controller, hint?: string): void {
        control.domElement.title = hint ?? "";
        control.domElement.querySelectorAll("input, select").forEach((input) => {
            const name = control.domElement.querySelector(".lil-name")?.textContent ?? "";
            input.setAttribute("aria-label", hint ? `${name}: ${hint}` : name);
        });
    }
}
