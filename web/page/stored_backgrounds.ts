// Stores the two backgrounds in the browser's database. One transaction stores both, so a failure changes neither.

/** File of a picture that the user has chosen, or the name of a painting. */
export type StoredBackground = Blob | string;

const databaseName = "velmora";
const storeName = "page";
const key = "backgrounds";

/** Resolves to the stored backgrounds, or to undefined if there are none or the browser allows no database. */
export async function loadBackgrounds(): Promise<unknown> {
    return transact("readonly", (store) => store.get(key)).catch(() => undefined);
}

/** Stores the backgrounds. Rejects if the browser's storage is full or not allowed. */
export async function storeBackgrounds(backgrounds: StoredBackground[]): Promise<void> {
    await transact("readwrite", (store) => store.put(backgrounds, key));
}

/** Deletes the stored backgrounds. Rejects if the browser allows no database. */
export async function deleteBackgrounds(): Promise<void> {
    await transact("readwrite", (store) => store.delete(key));
}

/** Sends one request to the database. Resolves to the request's result when the transaction is complete. */
async function transact(mode: IDBTransactionMode, request: (store: IDBObjectStore) => IDBRequest): Promise<unknown> {
    const database = await openDatabase();
    try {
        const transaction = database.transaction(storeName, mode);
        const { result } = await new Promise<IDBRequest>((resolve, reject) => {
            const made = request(transaction.objectStore(storeName));
            transaction.oncomplete = () => resolve(made);
            transaction.onabort = () => reject(transaction.error);
        });
        return result as unknown;
    } finally {
        database.close(); // an open connection would block a later version of the page
    }
}

function openDatabase(): Promise<IDBDatabase> {
    return new Promise((resolve, reject) => {
        const opening = indexedDB.open(databaseName, 1);
        opening.onupgradeneeded = () => opening.result.createObjectStore(storeName);
        opening.onsuccess = () => resolve(opening.result);
        opening.onerror = () => reject(opening.error);
    });
}
