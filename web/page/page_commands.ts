// Everything that the visitor can do with the page, but for the finger.

import type { Command } from "./commands";
import { choose } from "./files";
import type { Incoming } from "./incoming";
import type { Keeping } from "./keeping";
import type { Looks } from "./looks";
import { attempt, say } from "./notice";
import type { Player } from "./player";

declare const GESTURES: Record<string, string>;

export interface Parts {
    player: Player;
    looks: Looks;
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
    const looks = lookCommands(parts);
    const pictures = pictureCommands(parts);
    const views = viewCommands(parts);
    const keeping = keepingCommands(parts);
    const page = pageCommands(parts);
    const help = command("f1", "the list of keys", () => parts.help());
    const panel = command("tab", "the panel with all settings", () => parts.switchPanel(), "Tab");
    const waterOnly = command("w", "water without ink", () => parts.looks.turn("waterOnly"));
    const close = command("escape", "close the panel", () => parts.switchPanel(false), "Esc");
    return {
        all: [help, panel, ...views, ...looks, waterOnly, ...pictures, ...keeping, ...page, close],
        folders: {
            Preset: looks,
            Picture: pictures,
            Show: views,
            Keep: keeping,
            Gestures: gestureCommands(parts),
            Page: [...page, help],
        },
    };
}

function lookCommands({ looks, incoming }: Parts): Command[] {
    return [
        command("n", "the next preset", () => looks.next()),
        command("m", "a look by chance", () => looks.random()),
        command("backspace", "the preset's look again, unchanged", () => looks.reset(), "Backspace"),
        command("p", "save the settings as a preset", () => looks.save()),
        command("t", "another name for your preset", () => looks.rename()),
        command("delete", "remove your preset", () => looks.remove(), "Delete"),
        command("u", "a link to this look", () => looks.share()),
        command("j", "open a preset or gesture", () => choose(".json,.gesture", (file) => incoming.take(file))),
    ];
}

function pictureCommands({ looks, incoming, player }: Parts): Command[] {
    const takeSecond = async (file: File) => {
        if (await incoming.take(file, "second")) {
            looks.show({ ...player.look, secondBackground: true });
        }
    };
    return [
        command("o", "a picture of your own", () => choose("image/*", (file) => incoming.take(file))),
        command("e", "a second picture", () => choose("image/*", takeSecond)),
        toggle(
            "b",
            "the second background",
            () => player.look["secondBackground"] === true,
            () => looks.turn("secondBackground"),
        ),
        command("i", "an ink that stands out from the picture", () => looks.takeInkOfPicture()),
    ];
}

function viewCommands({ player }: Parts): Command[] {
    const { view } = player;
    const turn = (name: "velocity" | "density" | "paused", on: string, off: string) => {
        view[name] = !view[name];
        say(view[name] ? on : off);
        player.userCame();
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
    const isRecording = () => player.recording;
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
    const turnAttract = () => {
        player.view.attract = !player.view.attract;
        say(player.view.attract ? "a finger of its own comes after idle seconds" : "no finger but yours");
        player.userCame();
    };
    const turnQuality = () => {
        player.quality.fits = !player.quality.fits;
        say(player.quality.fits ? "waves drawn coarser where the machine is slow" : "all of the quality, however slow");
        player.userCame();
    };
    return [
        command("c", "clear the ink", () => player.clearInk()),
        toggle("x", "full screen", () => document.fullscreenElement !== null, switchFullScreen),
        toggle("a", "a finger of its own after idle seconds", () => player.view.attract, turnAttract),
        toggle("q", "quality that fits the machine", () => player.quality.fits, turnQuality),
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
