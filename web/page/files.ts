// Files out of the page and into it.

import { say } from "./notice";

/** Hands a file to the visitor, into the browser's folder for downloads. */
export function download(content: Blob | string, name: string): void {
    const blob = typeof content === "string" ? new Blob([content], { type: "text/plain" }) : content;
    const link = document.createElement("a");
    link.href = URL.createObjectURL(blob);
    link.download = name;
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 60000);
}

const namesGiven = new Set<string>();

/** A name that no earlier file of this page has. */
export function freshName(kind: string, suffix: string): string {
    const now = new Date();
    const two = (value: number) => String(value).padStart(2, "0");
    const day = `${now.getFullYear()}${two(now.getMonth() + 1)}${two(now.getDate())}`;
    const time = `${two(now.getHours())}${two(now.getMinutes())}${two(now.getSeconds())}`;
    const name = `velmora-${kind}-${day}-${time}`;
    let fresh = name;
    for (let count = 2; namesGiven.has(fresh); ++count) {
        fresh = `${name}-${count}`;
    }
    namesGiven.add(fresh);
    return fresh + suffix;
}

/** Asks the visitor for a file; `accept` as of an input. */
export function choose(accept: string, take: (file: File) => void): void {
    const input = document.createElement("input");
    input.type = "file";
    input.accept = accept;
    input.addEventListener("change", () => {
        const file = input.files?.[0];
        if (file) {
            take(file);
        }
    });
    input.click();
}

/** Calls `take` with every file dropped on the page or pasted into it. */
export function receiveFiles(take: (file: File) => void): void {
    const takeAll = (data: DataTransfer | null) => [...(data?.files ?? [])].forEach(take);
    window.addEventListener("dragover", (event) => event.preventDefault());
    window.addEventListener("drop", (event) => {
        event.preventDefault();
        takeAll(event.dataTransfer);
        if (event.dataTransfer?.files.length === 0) {
            say("that is no file: save it first, and drop the file");
        }
    });
    window.addEventListener("paste", (event) => takeAll(event.clipboardData));
}
