// Entry point of the page. Opens the effect and connects it to keys, panel, files and links.

import { stopNewest } from "./badges";
import { Capture } from "./capture";
import { CleanView } from "./clean_view";
import { fillHelp, isFramed, listen } from "./command";
import { FileImporter } from "./file_importer";
import { receiveFiles } from "./files";
import { Memory } from "./memory";
import { openEffect, showError } from "./open_effect";
import { makePageCommands } from "./page_commands";
import { Panel } from "./panel";
import { Player } from "./player";
import { PresetChooser } from "./preset_chooser";
import { loadPresets } from "./presets";
import { loadBackgrounds } from "./stored_backgrounds";
import { installTestHook } from "./test_hook";
import { attempt, hasKeys, showToast } from "./toast";

const byId = <Kind extends HTMLElement>(id: string) => document.getElementById(id) as Kind;

async function open(): Promise<void> {
    document.documentElement.classList.toggle("framed", isFramed);
    const canvas = byId<HTMLCanvasElement>("water");
    const backgrounds = loadBackgrounds(); // loads them while the module starts
    const effect = await openEffect(canvas);
    if (!effect) {
        return;
    }
    const player = new Player(effect, canvas);
    const capture = new Capture(player);
    const presets = new PresetChooser(player, loadPresets(effect), () => capture.thumbnail());
    const memory = new Memory(player, presets, backgrounds);
    const importer = connectControls(player, capture, presets, memory);
    showFocus(canvas);
    const drop = `${hasKeys ? "Click" : "Tap"} the drop for settings`;
    showToast(`Drag to stir the water. ${drop}${hasKeys ? ", or press F1 for the keys" : ""}.`);
    let isLinked = false;
    await attempt(() => (isLinked = presets.readLink()));
    if (isLinked) {
        effect.beginHistory(player.settings); // undo must not return to settings from before the visit
    } else {
        memory.recallSettings();
    }
    await memory.recallBackgrounds();
    player.restart();
    if (new URLSearchParams(location.search).has("test")) {
        installTestHook(player, importer, memory);
    }
}

/** Connects keys, panel, help, files and links to the player. */
function connectControls(
    player: Player,
    capture: Capture,
    presets: PresetChooser,
    memory: Memory,
): FileImporter {
    const importer = new FileImporter(player, presets);
    const cleanView = new CleanView();
    const help = byId<HTMLDialogElement>("help");
    const togglePanel = (open?: boolean) => {
        if (open !== false) {
            cleanView.show();
        }
        panel.toggle(open);
    };
    const showHelp = () => help.showModal();
    const escape = () => (panel.isOpen ? panel.toggle(false) : stopNewest());
    const context = { escape, player, presets, importer, capture, memory, cleanView, help: showHelp, togglePanel };
    const commands = makePageCommands(context);
    const panel = new Panel(byId("panel"), byId("open"), player, presets, commands.sections);
    listen(commands.all, () => player.noteInput());
    fillHelp(help, commands.all);
    receiveFiles((file) => void importer.take(file));
    window.addEventListener("hashchange", () => {
        cleanView.readAddress();
        void attempt(() => presets.readLink());
    });
    player.onSettings = () => {
        panel.update();
        presets.dropOldLink();
    };
    player.onReplayEnd = () => memory.noteSettings();
    presets.onChange = () => {
        panel.update();
        presets.dropOldLink();
        memory.noteSettings();
    };
    player.onBackgrounds = () => {
        panel.update();
        memory.noteBackgrounds();
    };
    return importer;
}

/**
 * Shows a focus ring on the canvas if Tab has moved the focus there. If the window loses and regains the focus, the
 * ring does not change.
 */
function showFocus(canvas: HTMLCanvasElement): void {
    let [isByTab, isWindowChange] = [false, false];
    // For Shift+Tab, WebKitGTK reports the code Tab, but not the key Tab.
    const isTab = ({ key, code }: KeyboardEvent): boolean => key === "Tab" || code === "Tab";
    window.addEventListener("keydown", (event) => (isByTab = isTab(event)), { capture: true });
    window.addEventListener("pointerdown", () => (isByTab = false), { capture: true });
    // The canvas stays the page's active element if the whole window loses the focus. The ring must then not change.
    canvas.addEventListener("blur", () => (isWindowChange = document.activeElement === canvas));
    canvas.addEventListener("focus", () => {
        if (!isWindowChange) {
            canvas.classList.toggle("tabbed", isByTab);
        }
    });
}

open().catch((error: unknown) => showError(`The page could not be opened: ${String(error)}. Please reload it.`));
