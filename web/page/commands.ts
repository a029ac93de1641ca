// What the visitor can do, each with its key: the keys, the panel's buttons and the help are made of this list.

export interface Command {
    /** As KeyboardEvent.key has it, small letters. */
    key: string;
    name: string;
    words: string;
    run(): void;
    /** Of what goes on until it is turned off, whoever does that. */
    isOn?: (() => boolean) | undefined;
}

/**
 * Keys that go to the page: not to a dialog, nor to a field that is being written into. Ctrl, Alt and Meta are the
 * browser's. They are caught on their way down, since the panel's parts let none up.
 */
export function listen(commands: Command[], userCame: () => void): void {
    const take = (event: KeyboardEvent) => {
        const key = event.key.toLowerCase();
        const command = commands.find((one) => one.key === key);
        if (!command || event.ctrlKey || event.altKey || event.metaKey || event.repeat || isTaken(event, key)) {
            return;
        }
        userCame();
        // Tab moves on within an open panel.
        if (key !== "tab" || isCanvasFocused()) {
            event.preventDefault();
            command.run();
        }
    };
    window.addEventListener("keydown", take, { capture: true });
}

function isTaken({ target }: KeyboardEvent, key: string): boolean {
    const is = (selector: string) => target instanceof HTMLElement && target.matches(selector);
    const presses = is("button, input, select") && [" ", "enter"].includes(key);
    const writes = is("textarea, input:not([type=checkbox], [type=color])") && !["escape", "f1"].includes(key);
    return presses || writes || document.querySelector("dialog[open]") !== null;
}

function isCanvasFocused(): boolean {
    return document.activeElement === document.body || document.activeElement instanceof HTMLCanvasElement;
}

/** A table of the keys in a dialog that Esc and F1 close. */
export function fillHelp(dialog: HTMLDialogElement, commands: Command[]): void {
    const rows = commands.map(({ name, words }) => {
        const row = document.createElement("tr");
        const key = document.createElement("kbd");
        key.textContent = name;
        row.insertCell().append(key);
        row.insertCell().append(words);
        return row;
    });
    const table = document.createElement("table");
    table.append(...rows);
    const words = document.createElement("p");
    words.textContent =
        "Drop or paste a picture and it becomes the background, the former one the second. " +
        "Presets (.json) and gestures (.gesture) can be dropped as well.";
    const close = document.createElement("button");
    close.textContent = "Close";
    close.type = "button";
    close.addEventListener("click", () => dialog.close());
    const title = document.createElement("header");
    title.append("Keys", close); // it has the focus: the list is seen from its start
    dialog.replaceChildren(title, table, words);
    dialog.addEventListener("click", (event) => event.target === dialog && dialog.close());
    dialog.addEventListener("keydown", (event) => {
        if (event.key === "F1") {
            event.preventDefault(); // the browser's own help
            dialog.close();
        }
    });
}
