// Shares at most eight GL contexts among all waters. A browser drops the oldest context if a page has too many.

/** A water that wants a context. */
export interface PoolClient {
    /** True if the client keeps its context until it gives it back itself. */
    readonly keepsContext: boolean;
    /** Opens a context. */
    open(): void;
    /** Gives the context back. */
    close(): void;
}

const maxContexts = 8;

/** Clients with a context; the first was used longest ago. */
const open = new Set<PoolClient>();
/** Clients that wait, in order. */
const waiting = new Set<PoolClient>();

export const contextPool = {
    /** Opens a context now, or as soon as another client gives one back. */
    request(client: PoolClient): void {
        if (!open.has(client)) {
            waiting.add(client);
            serve();
        }
    },

    /** Marks the client as used. A waiting client gets the context that was used longest ago. */
    use(client: PoolClient): void {
        if (open.delete(client)) {
            open.add(client);
        } else if (waiting.delete(client)) {
            const oldest = [...open].find((other) => !other.keepsContext);
            if (oldest && open.size >= maxContexts) {
                open.delete(oldest);
                waiting.add(oldest);
                oldest.close();
            }
            waiting.add(client);
            serve(client);
        }
    },

    /** Gives the client's context to the next that waits. The client has closed it. */
    release(client: PoolClient): void {
        waiting.delete(client);
        if (open.delete(client)) {
            serve();
        }
    },
};

/** Opens contexts of the waiting clients, first that of `preferred`. */
function serve(preferred?: PoolClient): void {
    for (const client of preferred ? [preferred, ...waiting] : waiting) {
        if (open.size >= maxContexts) {
            return;
        }
        if (waiting.delete(client)) {
            open.add(client);
            client.open();
        }
    }
}
