// All commands of the page.

import { commandTexts, sharedTexts } from "../../build/web/settings";
import type { Capture } from "./capture";
import type { CleanView } from "./clean_view";
import type { Command } from "./command";
import type { FileImporter } from "./file_importer";
import { canShare, choose } from "./files";
import type { Memory } from "./memory";
import type { Player } from "./player";
import type { PresetChooser } from "./preset_chooser";
import { attempt, hasKeys, showToast } from "./toast";

declare const GESTURES: Record<string, string>;

export interface CommandContext {
    player: Player;
    presets: PresetChooser;
    capture: Capture;
    importer: FileImporter;
    memory: Memory;
    cleanView: CleanView;
    help(): void;
    togglePanel(open?: boolean): void;
    /** Closes the panel if it is open. Otherwise ends the newest video, recording, replay or pause. */
    escape(): void;
}

export interface PageCommands {
    all: Command[];
    /** Commands that have a button, grouped by the heading of their section. The sections are in panel order. */
    sections: Record<string, Command[]>;
}

interface Texts {
    label: string;
    description: string;
}

function command(key: string, texts: Texts, run: () => unknown, keyName = key.toUpperCase()): Command {
    return { key, keyName, ...texts, run: () => void attempt(run) };
}

function toggle(
    key: string,
    texts: Texts,
    isOn: () => boolean,
    run: () => unknown,
    keyName = key.toUpperCase(),
): Command {
    return { ...command(key, texts, run, keyName), isOn };
}

/** Returns a message about a toggle, for example "Velocity field is on". */
function stateText({ label }: Texts, isOn: boolean): string {
    return `${label}${isOn ? sharedTexts.on : sharedTexts.off}`;
}

export function makePageCommands(context: CommandContext): PageCommands {
    const { player, presets, memory, cleanView } = context;
    const waterOnly = command("w", commandTexts.waterOnly, () => {
        presets.toggle("waterOnly");
        showToast(stateText(commandTexts.waterOnly, player.settings.waterOnly));
    });
    const clearInk = command("c", commandTexts.clearInk, () => {
        player.clearInk();
        showToast(sharedTexts.clearedInk);
    });
    const hide = command("h", { label: "Hide all controls", description: "Hide or show all controls" }, () => {
        context.togglePanel(false);
        cleanView.toggle();
    });
    const startFresh = command("", commandTexts.startFresh, () => memory.startFresh());
    const help = command("f1", commandTexts.help, () => context.help());
    const panel = command("tab", commandTexts.panel, () => context.togglePanel(), "Tab");
    const closeTexts = { label: "Close or stop", description: "Close the settings, or stop the newest activity" };
    const close = command("escape", closeTexts, () => context.escape(), "Esc");
    const sections = {
        [sharedTexts.presetSection]: presetCommands(context),
        Picture: pictureCommands(context),
        Water: [],
        Light: [],
        Ink: [clearInk],
        [sharedTexts.saveSection]: saveCommands(context),
        [sharedTexts.viewSection]: [...viewCommands(context), hide, startFresh, ...(hasKeys ? [help] : [])],
        Gestures: gestureCommands(context),
        [sharedTexts.developerSection]: developerCommands(context),
    };
    const withKeys = Object.values(sections)
        .flat()
        .filter(({ key }) => key !== "" && key !== help.key);
    return { all: [help, panel, ...withKeys, waterOnly, close], sections };
}

function presetCommands({ presets }: CommandContext): Command[] {
    const isShown = () => presets.isOwn;
    return [
        command("n", commandTexts.nextPreset, () => presets.next()),
        command("m", commandTexts.randomSettings, () => presets.random()),
        command("backspace", commandTexts.resetSettings, () => presets.reset(), "Backspace"),
        command("z", commandTexts.undo, () => presets.undo()),
        command("y", commandTexts.redo, () => presets.redo()),
        command("p", commandTexts.savePreset, () => presets.save()),
        { ...command("t", commandTexts.renamePreset, () => presets.rename()), isShown },
        { ...command("delete", commandTexts.deletePreset, () => presets.remove(), "Delete"), isShown },
    ];
}

function pictureCommands({ presets, importer, player }: CommandContext): Command[] {
    const camera = { label: "Use camera", description: "Use the camera image as the background" };
    const second = { label: "Choose second picture...", description: "Choose a picture as the second background" };
    const toggleSecond = () => {
        presets.toggle("secondBackground");
        showToast(player.settings.secondBackground ? sharedTexts.secondPicture : sharedTexts.firstPicture);
    };
    return [
        command("o", commandTexts.choosePicture, () => choose("image/*,video/*", (file) => importer.take(file))),
        command("e", second, () => choose("image/*,video/*", (file) => importer.take(file, "second"))),
        toggle("b", commandTexts.secondPicture, () => player.settings.secondBackground, toggleSecond),
        { ...command("", camera, () => importer.takeCamera()), isShown: () => navigator.mediaDevices !== undefined },
        command("i", commandTexts.matchInk, () => presets.chooseContrastingInk()),
    ];
}

function saveCommands({ capture, importer, player, presets }: CommandContext): Command[] {
    const wallpaper = { label: "Save wallpaper", description: "Save a screenshot with the size of this device's screen" };
    const shareTexts = { label: "Share screenshot", description: "Send a screenshot to another app" };
    const shareVideo = { label: "Share video", description: "Send the newest video to another app" };
    const isImageShareable = canShare("image/png");
    const isRecording = () => player.effect.isRecording;
    return [
        command("s", commandTexts.screenshot, () => capture.screenshot()),
        { ...command("", shareTexts, () => capture.shareScreenshot()), isShown: () => isImageShareable },
        command("", wallpaper, () => capture.wallpaper()),
        toggle("f", commandTexts.film, () => capture.isFilming, () => capture.toggleFilm()),
        { ...command("", shareVideo, () => capture.shareVideo()), isShown: () => capture.canShareVideo },
        toggle("r", commandTexts.record, isRecording, () => capture.toggleRecording()),
        command("g", commandTexts.replay, () => capture.replayNewest()),
        command("u", commandTexts.copyLink, () => presets.copyLink()),
        command("j", commandTexts.openFile, () => choose("image/*,video/*,.json,.gesture", (file) => importer.take(file))),
    ];
}

function gestureCommands({ player }: CommandContext): Command[] {
    return Object.entries(GESTURES).map(([name, script]) => {
        const label = name.replaceAll("_", " ");
        return command("", { label, description: `Replay the gesture ${label}` }, () => player.gestures.replay(script, label));
    });
}

function viewCommands({ player }: CommandContext): Command[] {
    const { effect, pause } = player;
    const isAdapting = () => effect.qualityPhase !== "fixed";
    const togglePause = () => {
        pause.isOn = !pause.isOn;
        showToast(pause.isOn ? sharedTexts.paused : sharedTexts.resumed);
        player.noteInput();
    };
    const toggleAttractMode = () => {
        effect.turnAttractMode(!effect.attractModeOn);
        showToast(stateText(commandTexts.attractMode, effect.attractModeOn));
        player.noteInput();
    };
    const toggleQuality = () => {
        if (isAdapting()) {
            effect.fixQuality(0);
        } else {
            effect.adaptQuality();
        }
        showToast(isAdapting() ? stateText(commandTexts.adaptiveQuality, true) : "Full quality");
        player.noteInput();
    };
    const isFullScreen = () => document.fullscreenElement !== null;
    return [
        toggle(" ", commandTexts.pause, () => pause.isOn, togglePause, "Space"),
        command(".", commandTexts.step, () => player.step()),
        toggle("x", commandTexts.fullScreen, isFullScreen, toggleFullScreen),
        toggle("a", commandTexts.attractMode, () => effect.attractModeOn, toggleAttractMode),
        toggle("q", commandTexts.adaptiveQuality, isAdapting, toggleQuality),
    ];
}

function developerCommands({ player }: CommandContext): Command[] {
    const { overlays, context } = player;
    const toggleOverlay = (name: "velocity" | "density", texts: Texts) => {
        overlays[name] = !overlays[name];
        showToast(stateText(texts, overlays[name]));
        player.noteInput();
    };
    const { velocityOverlay, inkOverlay, loseContext } = commandTexts;
    return [
        toggle("v", velocityOverlay, () => overlays.velocity, () => toggleOverlay("velocity", velocityOverlay)),
        toggle("d", inkOverlay, () => overlays.density, () => toggleOverlay("density", inkOverlay)),
        command("l", loseContext, () => context.lose()),
    ];
}

async function toggleFullScreen(): Promise<void> {
    const root = document.documentElement;
    if (document.fullscreenElement) {
        await document.exitFullscreen();
        return;
    }
    await root.requestFullscreen?.().catch(() => {}); // the browser or the page around this one may forbid it
    if (!document.fullscreenElement) {
        throw new Error("Full screen is not possible here. Open the page in its own tab, or try another browser");
    }
}
