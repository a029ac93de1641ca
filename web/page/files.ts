// Saves, shares and chooses files, and receives files that the user drops or pastes.

import { showErrorToast } from "./toast";

/** Saves a file in the browser's download folder. */
export function download(content: Blob | string, name: string): void {
    const blob = typeof content === "string" ? new Blob([content], { type: "text/plain" }) : content;
    const link = document.createElement("a");
    link.href = URL.createObjectURL(blob);
    link.download = name;
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 60000);
}

/** Returns true if the device can share files of this type, for example "image/png". */
export function canShare(type: string): boolean {
    const name = `a.${type.replace(/.*\//, "")}`;
    return navigator.canShare?.({ files: [new File([""], name, { type })] }) ?? false;
}

/** Opens the device's share sheet for a file. Does nothing more if the user closes the sheet. */
export async function share(content: Blob, name: string): Promise<void> {
    const file = new File([content], name, { type: content.type });
    await navigator.share({ files: [file] }).catch((error: unknown) => {
        // The error is an AbortError if the user closed the sheet.
        if ((error as Error).name !== "AbortError") {
            throw new Error(`${name} could not be shared. Save it instead`);
        }
    });
}

const usedNames = new Set<string>();

/** Returns a file name with date and time. Each call returns a different name. */
export function uniqueName(kind: string, suffix: string): string {
    const now = new Date();
    const twoDigits = (value: number) => String(value).padStart(2, "0");
    const day = `${now.getFullYear()}${twoDigits(now.getMonth() + 1)}${twoDigits(now.getDate())}`;
    const time = `${twoDigits(now.getHours())}${twoDigits(now.getMinutes())}${twoDigits(now.getSeconds())}`;
    const name = `velmora-${kind}-${day}-${time}`;
    let unique = name;
    for (let count = 2; usedNames.has(unique); ++count) {
        unique = `${name}-${count}`;
    }
    usedNames.add(unique);
    return unique + suffix;
}

/** Opens a file chooser and calls `take` with the chosen file. `accept` lists the types, as in `<input accept>`. */
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

/** Calls `take` with every file that the user drops on the page or pastes into it. */
export function receiveFiles(take: (file: File) => void): void {
    const takeAll = (data: DataTransfer | null) => [...(data?.files ?? [])].forEach(take);
    window.addEventListener("dragover", (event) => event.preventDefault());
    window.addEventListener("drop", (event) => {
        event.preventDefault();
        takeAll(event.dataTransfer);
        if (event.dataTransfer?.files.length === 0) {
            showErrorToast("Nothing to open here: only files can be dropped. Save the item as a file first");
        }
    });
    window.addEventListener("paste", (event) => takeAll(event.clipboardData));
}
