// Shares at most eight GL contexts among all areas of water on a page. If a page has too many contexts, the browser
// discards the oldest context.

/** An area of water that needs a GL context. */
export interface PoolClient {
    /**
     * True if the pool must not take the context from this client. The client then keeps it until it calls `release`.
     */
    readonly keepsContext: boolean;
    /** Opens a context for the client. */
    open(): void;
    /** Gives the context back. */
    close(): void;
}

const maxContexts = 8;

/** Clients that have a context. The first is the least recently used client. */
const open = new Set<PoolClient>();
/** Clients that wait for a context, in the order of their requests. */
const waiting = new Set<PoolClient>();

export const contextPool = {
    /** Opens a context for the client, now or as soon as another client gives one back. */
    request(client: PoolClient): void {
        if (!open.has(client)) {
            waiting.add(client);
            serve();
        }
    },

    /**
     * Marks the client as the most recently used one. If this client waits and all contexts are in use, it gets the
     * context of the least recently used client that does not keep its context.
     */
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

    /** Removes a client that has closed its context. The next waiting client then gets a context. */
    release(client: PoolClient): void {
        waiting.delete(client);
        if (open.delete(client)) {
            serve();
        }
    },
};

/** Opens contexts for waiting clients, up to `maxContexts`. Serves the client `preferred` first, if given. */
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
