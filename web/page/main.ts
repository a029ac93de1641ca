// Entry point of the page. Opens the effect and connects it to keys, panel, files and links.

import { Capture } from "./capture";
import { fillHelp, listen } from "./command";
import { FileImporter } from "./file_importer";
import { receiveFiles } from "./files";
import { openEffect } from "./open_effect";
import { makePageCommands } from "./page_commands";
import { Panel } from "./panel";
import { Player } from "./player";
import { PresetChooser } from "./preset_chooser";
import { loadPresets } from "./presets";
import { installTestHook } from "./test_hook";
import { attempt, hasKeys, showToast } from "./toast";

const byId = <Kind extends HTMLElement>(id: string) => document.getElementById(id) as Kind;

async function open(): Promise<void> {
    const canvas = byId<HTMLCanvasElement>("water");
    const effect = await openEffect(canvas);
    if (!effect) {
        return;
    }
    const player = new Player(effect, canvas);
    const presets = new PresetChooser(player, loadPresets(effect));
    const importer = connectControls(player, presets);
    connectFocusRing(canvas);
    showToast(`Touch the water. The drop at the top opens the settings${hasKeys ? "; F1 shows the keys" : ""}.`);
    await attempt(() => presets.readLink());
    player.restart();
    installTestHook(player, importer);
}

/** Connects keys, panel, help, files and links to the player. */
function connectControls(player: Player, presets: PresetChooser): FileImporter {
    const importer = new FileImporter(player, presets.presets, (preset) => presets.select(preset));
    const help = byId<HTMLDialogElement>("help");
    const commands = makePageCommands({
        player,
        presets,
        importer,
        capture: new Capture(player),
        help: () => help.showModal(),
        togglePanel: (open?: boolean) => panel.isOpen !== open && panel.toggle(open),
    });
    const panel = new Panel(byId("panel"), byId("open"), player, presets, commands.folders);
    listen(commands.all, () => player.noteInput());
    fillHelp(help, commands.all);
    receiveFiles((file) => void importer.take(file));
    window.addEventListener("hashchange", () => void attempt(() => presets.readLink()));
    presets.onChange = player.onSettings = () => panel.update();
    player.gestures.onReplayEnd = () => showToast("the gesture has ended");
    return importer;
}

/** Shows a focus ring around the canvas only after Tab. A key press after a touch shows none. */
function connectFocusRing(canvas: HTMLCanvasElement): void {
    canvas.addEventListener("focus", () => canvas.classList.toggle("tabbed", canvas.matches(":focus-visible")));
}

void open();
