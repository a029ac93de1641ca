// Everything that the visitor can do with the page, but for the finger.

import type { Command } from "./commands";
import { choose } from "./files";
import type { Incoming } from "./incoming";
import type { Keeping } from "./keeping";
import { attempt, say } from "./notice";
import type { Player } from "./player";
import type { PresetChooser } from "./preset_chooser";

declare const GESTURES: Record<string, string>;

export interface Parts {
    player: Player;
    presets: PresetChooser;
    keeping: Keeping;
    incoming: Incoming;
    help(): void;
    switchPanel(open?: boolean): void;
}

export interface PageCommands {
    all: Command[];
    /** Those that have a button, by the folder it stands in. */
    folders: Record<string, Command[]>;
}

function command(key: string, words: string, run: () => unknown, name = key.toUpperCase()): Command {
    return { key, name, words, run: () => void attempt(run) };
}

function toggle(key: string, words: string, isOn: () => boolean, run: () => unknown, name = key.toUpperCase()): Command {
    return { ...command(key, words, run, name), isOn };
}

export function makeCommands(parts: Parts): PageCommands {
    const presets = presetCommands(parts);
    const pictures = pictureCommands(parts);
    const views = viewCommands(parts);
    const keeping = keepingCommands(parts);
    const page = pageCommands(parts);
    const help = command("f1", "the list of keys", () => parts.help());
    const panel = command("tab", "the panel with all settings", () => parts.switchPanel(), "Tab");
    const waterOnly = command("w", "water without ink", () => parts.presets.turn("waterOnly"));
    const close = command("escape", "close the panel", () => parts.switchPanel(false), "Esc");
    return {
        all: [help, panel, ...views, ...presets, waterOnly, ...pictures, ...keeping, ...page, close],
        folders: {
            Preset: presets,
            Picture: pictures,
            Show: views,
            Keep: keeping,
            Gestures: gestureCommands(parts),
            Page: [...page, help],
        },
    };
}

function presetCommands({ presets, incoming }: Parts): Command[] {
    return [
        command("n", "the next preset", () => presets.next()),
        command("m", "a look by chance", () => presets.random()),
        command("backspace", "the preset's look again, unchanged", () => presets.reset(), "Backspace"),
        command("p", "save the settings as a preset", () => presets.save()),
        command("t", "another name for your preset", () => presets.rename()),
        command("delete", "remove your preset", () => presets.remove(), "Delete"),
        command("u", "a link to this look", () => presets.share()),
        command("j", "open a preset or gesture", () => choose(".json,.gesture", (file) => incoming.take(file))),
    ];
}

function pictureCommands({ presets, incoming, player }: Parts): Command[] {
    const takeSecond = async (file: File) => {
        if (await incoming.take(file, "second")) {
            presets.show({ ...player.settings, secondBackground: true });
        }
    };
    return [
        command("o", "a picture of your own", () => choose("image/*", (file) => incoming.take(file))),
        command("e", "a second picture", () => choose("image/*", takeSecond)),
        toggle(
            "b",
            "the second background",
            () => player.settings.secondBackground,
            () => presets.turn("secondBackground"),
        ),
        command("i", "an ink that stands out from the picture", () => presets.takeInkOfBackground()),
    ];
}

function viewCommands({ player }: Parts): Command[] {
    const { view } = player;
    const turn = (name: "velocity" | "density" | "paused", on: string, off: string) => {
        view[name] = !view[name];
        say(view[name] ? on : off);
        player.noteInput();
    };
    const isPaused = () => view.paused;
    return [
        toggle(" ", "pause", isPaused, () => turn("paused", "paused", "going on"), "Space"),
        command(".", "one frame, paused", () => player.step()),
        toggle("v", "the velocity field", () => view.velocity, () => turn("velocity", "the flow", "no flow")),
        toggle("d", "the ink's density", () => view.density, () => turn("density", "the ink's density", "no density")),
    ];
}

function keepingCommands({ keeping, player }: Parts): Command[] {
    const isRecording = () => player.effect.isRecording;
    return [
        command("s", "a screenshot", () => keeping.screenshot()),
        toggle("f", "film until pressed again", () => player.filming, () => keeping.switchFilm()),
        toggle("r", "record the gesture until pressed again", isRecording, () => keeping.switchRecording()),
        command("g", "play the recorded gesture again", () => keeping.replayNewest()),
    ];
}

function gestureCommands({ player }: Parts): Command[] {
    return Object.entries(GESTURES).map(([name, script]) =>
        command("", name.replaceAll("_", " "), () => void player.replay(script, name), ""),
    );
}

function pageCommands({ player }: Parts): Command[] {
    const { effect } = player;
    const isAdapting = () => effect.qualityPhase !== "fixed";
    const turnAttract = () => {
        effect.attractModeOn = !effect.attractModeOn;
        say(effect.attractModeOn ? "a finger of its own comes after idle seconds" : "no finger but yours");
        player.noteInput();
    };
    const turnQuality = () => {
        if (isAdapting()) {
            effect.fixQuality(0);
        } else {
            effect.adaptQuality();
        }
        say(isAdapting() ? "waves drawn coarser where the machine is slow" : "all of the quality, however slow");
        player.noteInput();
    };
    return [
        command("c", "clear the ink", () => player.clearInk()),
        toggle("x", "full screen", () => document.fullscreenElement !== null, switchFullScreen),
        toggle("a", "a finger of its own after idle seconds", () => effect.attractModeOn, turnAttract),
        toggle("q", "quality that fits the machine", isAdapting, turnQuality),
        command("l", "lose the GL context and rebuild it", () => loseContext(player)),
    ];
}

async function switchFullScreen(): Promise<void> {
    if (document.fullscreenElement) {
        await document.exitFullscreen();
    } else if (document.documentElement.requestFullscreen) {
        await document.documentElement.requestFullscreen();
    } else {
        say("this browser has no full screen for pages");
    }
}

function loseContext(player: Player): void {
    player.needContext();
    const { canvas, effect } = player;
    const extension = effect.gl.getExtension("WEBGL_lose_context");
    if (!extension) {
        say("this browser cannot lose a context at will");
        return;
    }
    // It may come back once the page has heard of its loss.
    canvas.addEventListener("webglcontextlost", () => setTimeout(() => extension.restoreContext(), 400), { once: true });
    extension.loseContext();
}
