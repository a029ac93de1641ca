// What the visitor can do, each with its key: the keys, the panel's buttons and the help are made of this list.

export interface Command {
    /** As KeyboardEvent.key has it, small letters. */
    key: string;
    name: string;
    words: string;
    run(): void;
}

/** Keys that go to the page and not to a field that is being written into. Ctrl, Alt and Meta are the browser's. */
export function listen(commands: Command[], userCame: () => void): void {
    window.addEventListener("keydown", (event) => {
        const writes = event.target instanceof HTMLElement && event.target.matches("input, select, textarea");
        if (event.ctrlKey || event.altKey || event.metaKey || event.repeat || (writes && event.key !== "Escape")) {
            return;
        }
        const pressesButton = event.target instanceof HTMLButtonElement && [" ", "Enter"].includes(event.key);
        const command = commands.find((one) => one.key === event.key.toLowerCase());
        if (command && !pressesButton) {
            userCame();
            // Tab moves on within an open panel.
            if (command.key !== "tab" || isCanvasFocused()) {
                event.preventDefault();
                command.run();
            }
        }
    });
}

function isCanvasFocused(): boolean {
    return document.activeElement === document.body || document.activeElement instanceof HTMLCanvasElement;
}

/** A table of the keys in a dialog that Esc closes. */
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
    dialog.replaceChildren(table, words, close);
    dialog.addEventListener("click", (event) => event.target === dialog && dialog.close());
}
