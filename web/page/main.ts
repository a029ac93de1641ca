// The page: opens the effect, and ties it to keys, panel, files and links.

import { fillHelp, listen } from "./commands";
import { receiveFiles } from "./files";
import { Incoming } from "./incoming";
import { Keeping } from "./keeping";
import { Looks } from "./looks";
import { attempt, hasKeys, say } from "./notice";
import { openEffect } from "./opening";
import { makeCommands } from "./page_commands";
import { Panel } from "./panel";
import { Player } from "./player";
import { loadPresets } from "./presets";

const byId = <Kind extends HTMLElement>(id: string) => document.getElementById(id) as Kind;

async function open(): Promise<void> {
    const canvas = byId<HTMLCanvasElement>("water");
    const effect = await openEffect(canvas);
    if (!effect) {
        return;
    }
    const player = new Player(effect, canvas);
    const looks = new Looks(player, loadPresets(effect));
    tieControls(player, looks);
    tieCanvas(player);
    say(`Touch the water. The drop above opens the settings${hasKeys ? ", F1 lists the keys" : ""}.`);
    await attempt(() => looks.readLink());
    player.restart();
    (window as unknown as { velmora: Player }).velmora = player; // for those who look closely, tests among them
}

/** Keys, panel, help, files and links. */
function tieControls(player: Player, looks: Looks): void {
    const incoming = new Incoming(player, looks.presets, (preset) => looks.takeUp(preset));
    const help = byId<HTMLDialogElement>("help");
    const commands = makeCommands({
        player,
        looks,
        incoming,
        keeping: new Keeping(player),
        help: () => help.showModal(),
        switchPanel: (open?: boolean) => panel.isOpen !== open && panel.toggle(open),
    });
    const panel = new Panel(byId("panel"), byId("open"), player, looks, commands.folders);
    listen(commands.all, () => player.userCame());
    fillHelp(help, commands.all);
    receiveFiles((file) => void incoming.take(file));
    window.addEventListener("hashchange", () => void attempt(() => looks.readLink()));
    looks.onChange = player.onLook = () => panel.update();
    player.onReplayEnd = () => say("the gesture has ended");
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
