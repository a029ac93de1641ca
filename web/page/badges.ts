// Shows a badge for each running activity: a video, recording, replay or pause. A tap on the badge, or Esc, ends it.

const container = document.getElementById("badges") as HTMLElement;
/** Functions that end the running activities. The function of the newest activity is the last. */
const stops: (() => void)[] = [];

/**
 * Shows a badge with a label and the time since this call. If `isStill` is true, shows only the label. A tap on the
 * badge calls `stop`. `action` tells the user the effect of a tap. Returns a function that removes the badge.
 */
export function showBadge(label: string, action: string, stop: () => void, isStill = false): () => void {
    const badge = document.createElement("button");
    badge.type = "button";
    badge.title = action;
    badge.setAttribute("aria-label", `${label}. ${action}`);
    badge.classList.toggle("still", isStill);
    badge.addEventListener("click", stop);
    const start = performance.now();
    const show = () => {
        const seconds = Math.floor((performance.now() - start) / 1000);
        const time = ` ${Math.floor(seconds / 60)}:${String(seconds % 60).padStart(2, "0")}`;
        badge.textContent = label + (isStill ? "" : time);
    };
    show();
    const ticking = setInterval(show, 500);
    container.append(badge);
    stops.push(stop);
    return () => {
        clearInterval(ticking);
        badge.remove();
        stops.splice(stops.indexOf(stop), 1);
    };
}

/** Ends the newest running activity. Does nothing if no activity is running. */
export function stopNewest(): void {
    stops.at(-1)?.();
}
