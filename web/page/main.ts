// The page: opens the effect, and ties it to keys, panel, files and links.

import { fillHelp, listen } from "./commands";
import { receiveFiles } from "./files";
import { Incoming } from "./incoming";
import { Keeping } from "./keeping";
import { attempt, hasKeys, say } from "./notice";
import { openEffect } from "./opening";
import { makeCommands } from "./page_commands";
import { Panel } from "./panel";
import { Player } from "./player";
import { PresetChooser } from "./preset_chooser";
import { loadPresets } from "./presets";
import { offerTestHook } from "./test_hook";

const byId = <Kind extends HTMLElement>(id: string) => document.getElementById(id) as Kind;

async function open(): Promise<void> {
    const canvas = byId<HTMLCanvasElement>("water");
    const effect = await openEffect(canvas);
    if (!effect) {
        return;
    }
    const player = new Player(effect, canvas);
    const presets = new PresetChooser(player, loadPresets(effect));
    const incoming = tieControls(player, presets);
    tieCanvas(player);
    say(`Touch the water. The drop above opens the settings${hasKeys ? ", F1 lists the keys" : ""}.`);
    await attempt(() => presets.readLink());
    player.restart();
    offerTestHook(player, incoming);
}

/** Keys, panel, help, files and links. */
function tieControls(player: Player, presets: PresetChooser): Incoming {
    const incoming = new Incoming(player, presets.presets, (preset) => presets.takeUp(preset));
    const help = byId<HTMLDialogElement>("help");
    const commands = makeCommands({
        player,
        presets,
        incoming,
        keeping: new Keeping(player),
        help: () => help.showModal(),
        switchPanel: (open?: boolean) => panel.isOpen !== open && panel.toggle(open),
    });
    const panel = new Panel(byId("panel"), byId("open"), player, presets, commands.folders);
    listen(commands.all, () => player.noteInput());
    fillHelp(help, commands.all);
    receiveFiles((file) => void incoming.take(file));
    window.addEventListener("hashchange", () => void attempt(() => presets.readLink()));
    presets.onChange = player.onSettings = () => panel.update();
    player.onReplayEnd = () => say("the gesture has ended");
    return incoming;
}

/** Its focus, and the loss of its context. */
function tieCanvas(player: Player): void {
    const { canvas } = player;
    // A ring for those who came by Tab; a key pressed after a touch brings none.
    canvas.addEventListener("focus", () => canvas.classList.toggle("tabbed", canvas.matches(":focus-visible")));
    canvas.addEventListener("webglcontextlost", (event) => {
        event.preventDefault(); // else it would not come back
        player.loseContext();
        say("the GL context is lost");
    });
    canvas.addEventListener("webglcontextrestored", () => {
        player.regainContext();
        say("the GL context is back: the ink is gone, picture and settings are as they were");
    });
}

void open();
