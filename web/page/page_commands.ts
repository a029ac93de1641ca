// All commands of the page.

import type { Capture } from "./capture";
import type { Command } from "./command";
import type { FileImporter } from "./file_importer";
import { choose } from "./files";
import type { Player } from "./player";
import type { PresetChooser } from "./preset_chooser";
import { attempt, showToast } from "./toast";

declare const GESTURES: Record<string, string>;

export interface CommandContext {
    player: Player;
    presets: PresetChooser;
    capture: Capture;
    importer: FileImporter;
    help(): void;
    togglePanel(open?: boolean): void;
}

export interface PageCommands {
    all: Command[];
    /** Commands with a button, by folder of the panel. */
    folders: Record<string, Command[]>;
}

function command(key: string, label: string, run: () => unknown, keyName = key.toUpperCase()): Command {
    return { key, keyName, label, run: () => void attempt(run) };
}

function toggle(
    key: string,
    label: string,
    isOn: () => boolean,
    run: () => unknown,
    keyName = key.toUpperCase(),
): Command {
    return { ...command(key, label, run, keyName), isOn };
}

export function makePageCommands(context: CommandContext): PageCommands {
    const presets = presetCommands(context);
    const backgrounds = backgroundCommands(context);
    const views = viewCommands(context);
    const capture = captureCommands(context);
    const page = pageCommands(context);
    const help = command("f1", "show the keys", () => context.help());
    const panel = command("tab", "open the settings", () => context.togglePanel(), "Tab");
    const waterOnly = command("w", "water only", () => context.presets.toggle("waterOnly"));
    const close = command("escape", "close the panel", () => context.togglePanel(false), "Esc");
    return {
        all: [help, panel, ...views, ...presets, waterOnly, ...backgrounds, ...capture, ...page, close],
        folders: {
            Preset: presets,
            Background: backgrounds,
            Show: views,
            Save: capture,
            Gestures: gestureCommands(context),
            Page: [...page, help],
        },
    };
}

function presetCommands({ presets, importer }: CommandContext): Command[] {
    return [
        command("n", "next preset", () => presets.next()),
        command("m", "random settings", () => presets.random()),
        command("backspace", "reset to the preset", () => presets.reset(), "Backspace"),
        command("p", "save the settings as a preset", () => presets.save()),
        command("t", "rename your preset", () => presets.rename()),
        command("delete", "remove your preset", () => presets.remove(), "Delete"),
        command("u", "share a link to these settings", () => presets.share()),
        command("j", "open a preset or gesture", () => choose(".json,.gesture", (file) => importer.take(file))),
    ];
}

function backgroundCommands({ presets, importer, player }: CommandContext): Command[] {
    const importSecond = async (file: File) => {
        if (await importer.take(file, "second")) {
            presets.show({ ...player.settings, secondBackground: true });
        }
    };
    return [
        command("o", "open a background image", () => choose("image/*", (file) => importer.take(file))),
        command("e", "open a second background image", () => choose("image/*", importSecond)),
        toggle(
            "b",
            "show the second background",
            () => player.settings.secondBackground,
            () => presets.toggle("secondBackground"),
        ),
        command("i", "choose a contrasting ink", () => presets.chooseContrastingInk()),
    ];
}

function viewCommands({ player }: CommandContext): Command[] {
    const { pause, overlays } = player;
    const show = (label: string, isOn: boolean) => {
        showToast(`${label} ${isOn ? "on" : "off"}`);
        player.noteInput();
    };
    const togglePause = () => show("pause", (pause.isOn = !pause.isOn));
    const toggleVelocity = () => show("velocity field", (overlays.velocity = !overlays.velocity));
    const toggleDensity = () => show("ink density", (overlays.density = !overlays.density));
    return [
        toggle(" ", "pause", () => pause.isOn, togglePause, "Space"),
        command(".", "step by one frame", () => player.step()),
        toggle("v", "velocity field", () => overlays.velocity, toggleVelocity),
        toggle("d", "ink density", () => overlays.density, toggleDensity),
    ];
}

function captureCommands({ capture, player }: CommandContext): Command[] {
    const isRecording = () => player.effect.isRecording;
    return [
        command("s", "save a screenshot", () => capture.screenshot()),
        toggle("f", "start or stop a film", () => player.filming, () => capture.toggleFilm()),
        toggle("r", "start or stop recording a gesture", isRecording, () => capture.toggleRecording()),
        command("g", "replay the recorded gesture", () => capture.replayNewest()),
    ];
}

function gestureCommands({ player }: CommandContext): Command[] {
    return Object.entries(GESTURES).map(([name, script]) =>
        command("", name.replaceAll("_", " "), () => void player.gestures.replay(script, name), ""),
    );
}

function pageCommands({ player }: CommandContext): Command[] {
    const { effect } = player;
    const isAdapting = () => effect.qualityPhase !== "fixed";
    const toggleAttractMode = () => {
        effect.attractModeOn = !effect.attractModeOn;
        showToast(`attract mode ${effect.attractModeOn ? "on: the page draws by itself when idle" : "off"}`);
        player.noteInput();
    };
    const toggleQuality = () => {
        if (isAdapting()) {
            effect.fixQuality(0);
        } else {
            effect.adaptQuality();
        }
        showToast(`adaptive quality ${isAdapting() ? "on: a slow machine draws less detail" : "off: all detail is drawn"}`);
        player.noteInput();
    };
    return [
        command("c", "clear the ink", () => player.clearInk()),
        toggle("x", "full screen", () => document.fullscreenElement !== null, toggleFullScreen),
        toggle("a", "attract mode", () => effect.attractModeOn, toggleAttractMode),
        toggle("q", "adaptive quality", isAdapting, toggleQuality),
        command("l", "lose the GL context and rebuild it", () => player.context.lose()),
    ];
}

async function toggleFullScreen(): Promise<void> {
    if (document.fullscreenElement) {
        await document.exitFullscreen();
    } else if (document.documentElement.requestFullscreen) {
        await document.documentElement.requestFullscreen();
    } else {
        showToast("this browser cannot show pages in full screen");
    }
}
