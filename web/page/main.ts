// The page: opens the effect, and ties it to keys, panel, files and links.

import { fillHelp, listen, type Command } from "./commands";
import { choose, download, freshName, receiveFiles } from "./files";
import { Incoming } from "./incoming";
import { Keeping } from "./keeping";
import { linkOf, lookInLink, parseLook, writeLook, type Look } from "./look";
import { attempt, say } from "./notice";
import { openEffect } from "./opening";
import { Panel } from "./panel";
import { Player } from "./player";
import { addPreset, loadPresets } from "./presets";

declare const GESTURES: Record<string, string>;

const byId = <Kind extends HTMLElement>(id: string) => document.getElementById(id) as Kind;

async function open(): Promise<void> {
    const canvas = byId<HTMLCanvasElement>("water");
    const effect = await openEffect(canvas);
    if (!effect) {
        return;
    }
    const player = new Player(effect, canvas);
    const presets = loadPresets(effect);
    const keeping = new Keeping(player);
    const help = byId<HTMLDialogElement>("help");
    let shownPreset = -1;
    let panel: Panel;

    const showLook = (look: Look) => {
        Object.assign(player.look, structuredClone(look));
        panel.update();
        player.userCame();
    };
    const incoming = new Incoming(player, presets, showLook);
    const readLink = () =>
        attempt(() => {
            const text = lookInLink(location.hash);
            if (text !== undefined) {
                try {
                    showLook(parseLook(text, effect));
                } catch (error) {
                    throw new Error(`the look in this link: ${(error as Error).message}`);
                }
            }
        });

    const choosePreset = (name: string) => {
        const found = presets.all.findIndex((preset) => preset.name === name);
        const preset = presets.all[found];
        if (preset) {
            shownPreset = found;
            showLook(preset.look);
            say(preset.name);
        }
    };
    const nextPreset = () => choosePreset(presets.all[(shownPreset + 1) % presets.all.length]?.name ?? "");
    const savePreset = () => {
        const name = freshName("look", "");
        addPreset(presets, name, player.look);
        download(writeLook(player.look), `${name}.json`);
        panel.update();
        say(`saved ${name}.json, and in the list of presets`);
    };
    const shareLook = async () => {
        const link = linkOf(player.look, location.href);
        history.replaceState(null, "", link);
        if (navigator.share && /^https?:/.test(link)) {
            await navigator.share({ title: document.title, url: link }).catch(() => {}); // the visitor changed their mind
            return;
        }
        await navigator.clipboard.writeText(link).then(
            () => say("the link to this look is copied"),
            () => say("the page's address now carries this look"),
        );
    };
    const turn = (name: "velocity" | "density" | "paused" | "attract", on: string, off: string) => {
        player.view[name] = !player.view[name];
        say(player.view[name] ? on : off);
        player.userCame();
    };
    const turnSetting = (name: "secondBackground" | "waterOnly") => {
        player.look[name] = !player.look[name];
        panel.update();
        player.userCame();
    };
    const switchFullScreen = async () => {
        if (document.fullscreenElement) {
            await document.exitFullscreen();
        } else if (document.documentElement.requestFullscreen) {
            await document.documentElement.requestFullscreen();
        } else {
            say("this browser has no full screen for pages");
        }
    };
    const loseContext = () => {
        const extension = effect.gl.getExtension("WEBGL_lose_context");
        if (!extension) {
            say("this browser cannot lose a context at will");
            return;
        }
        // It may come back once the page has heard of its loss.
        canvas.addEventListener("webglcontextlost", () => setTimeout(() => extension.restoreContext(), 400), {
            once: true,
        });
        extension.loseContext();
    };
    const closeAll = () => {
        if (panel.isOpen) {
            panel.toggle(false);
        }
    };

    const command = (key: string, words: string, run: () => unknown, name = key.toUpperCase()): Command => ({
        key,
        name,
        words,
        run: () => void attempt(run),
    });
    const commands = {
        help: command("f1", "this list", () => help.showModal()),
        panel: command("tab", "the panel with all settings", () => panel.toggle(), "Tab"),
        fullScreen: command("x", "full screen", switchFullScreen),
        pause: command(" ", "pause and go on", () => turn("paused", "paused", "going on"), "Space"),
        step: command(".", "one frame, paused", () => player.step()),
        clear: command("c", "clear the ink", () => player.clearInk()),
        second: command("b", "the other background", () => turnSetting("secondBackground")),
        waterOnly: command("w", "water without ink", () => turnSetting("waterOnly")),
        velocity: command("v", "the velocity field", () => turn("velocity", "the flow", "no flow")),
        density: command("d", "the ink's density", () => turn("density", "the ink's density", "no density")),
        next: command("n", "the next preset", nextPreset),
        save: command("p", "save the settings as a preset", savePreset),
        share: command("u", "a link to this look", shareLook),
        picture: command("o", "a picture of your own", () => choose("image/*", (file) => incoming.take(file))),
        secondPicture: command("e", "a second picture", () =>
            choose("image/*", (file) => incoming.take(file, "second").then(() => (player.look["secondBackground"] = true))),
        ),
        file: command("i", "open a preset or gesture", () =>
            choose(".json,.gesture", (file) => incoming.take(file)),
        ),
        screenshot: command("s", "a screenshot", () => keeping.screenshot()),
        film: command("f", "film, from here or to here", () => keeping.switchFilm()),
        record: command("r", "record the gesture, from here or to here", () => keeping.switchRecording()),
        again: command("g", "play the recorded gesture again", () => keeping.replayNewest()),
        lose: command("l", "lose the GL context and rebuild it", loseContext),
        attract: command("a", "a finger of its own after idle seconds", () =>
            turn("attract", "a finger of its own comes after idle seconds", "no finger but yours"),
        ),
        close: command("escape", "close the panel", closeAll, "Esc"),
    };
    const gestures = Object.entries(GESTURES).map(([name, script]) =>
        command("", name.replaceAll("_", " "), () => void player.replay(script, name), ""),
    );
    const { picture, secondPicture, second, pause, step, velocity, density, screenshot, film, record, again } = commands;
    panel = new Panel(byId("panel"), byId("open"), {
        player,
        presets,
        choosePreset,
        commands: Object.values(commands),
        tools: {
            Preset: [commands.next, commands.save, commands.share, commands.file],
            Picture: [picture, secondPicture, second],
            Show: [pause, step, velocity, density],
            Keep: [screenshot, film, record, again],
            Gestures: gestures,
            Page: [commands.clear, commands.fullScreen, commands.attract, commands.lose, commands.help],
        },
    });

    listen(Object.values(commands), () => player.userCame());
    fillHelp(help, Object.values(commands));
    receiveFiles((file) => void incoming.take(file));
    window.addEventListener("hashchange", () => void readLink());
    player.onLook = () => panel.update();
    player.onReplayEnd = () => say("the gesture has ended");
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

    say("Touch the water. The drop above opens the settings, F1 lists the keys.");
    await readLink();
    player.restart();
    (window as unknown as { velmora: Player }).velmora = player; // for those who look closely, tests among them
}

void open();
