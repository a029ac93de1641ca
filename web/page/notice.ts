// One line to the visitor, for a while; and marks for as long as something runs.

const line = document.getElementById("notice") as HTMLElement;
const marks = document.getElementById("marks") as HTMLElement;
const longest = 300;
/** Who has but a finger is told of no keys. */
export const hasKeys = !matchMedia("(pointer: coarse)").matches;
let timer = 0;

/** Line breaks and other control characters of a file would tear the line. */
export function say(words: string): void {
    const clean = words.replace(/[\p{Cc}\p{Cf}\s]+/gu, " ");
    line.textContent = clean.length > longest ? clean.slice(0, longest) + "…" : clean;
    line.classList.add("shown");
    clearTimeout(timer);
    timer = window.setTimeout(() => line.classList.remove("shown"), 4000 + 40 * clean.length);
}

/** Runs what may fail; a failure is said, and loses nothing. Returns whether it worked. */
export async function attempt(action: () => unknown): Promise<boolean> {
    try {
        await action();
        return true;
    } catch (error) {
        say(error instanceof Error ? error.message : String(error));
        return false;
    }
}

/** A red dot with what runs and how long it has. Returns how to end it. */
export function mark(words: string): () => void {
    const element = document.createElement("span");
    const start = performance.now();
    const show = () => {
        const seconds = Math.floor((performance.now() - start) / 1000);
        element.textContent = `${words} ${Math.floor(seconds / 60)}:${String(seconds % 60).padStart(2, "0")}`;
    };
    show();
    const ticking = setInterval(show, 500);
    marks.append(element);
    return () => {
        clearInterval(ticking);
        element.remove();
    };
}
