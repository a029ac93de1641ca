// Keeps the site usable without a network. The build fills in the names in capital letters.

const cacheName = "velmora-VERSION";
const files = FILES;

self.addEventListener("install", (event) => {
    event.waitUntil(caches.open(cacheName).then((cache) => cache.addAll(files)));
});

self.addEventListener("activate", (event) => {
    const removeOthers = async () => {
        const names = await caches.keys();
        await Promise.all(names.filter((name) => name !== cacheName).map((name) => caches.delete(name)));
    };
    event.waitUntil(removeOthers());
});

self.addEventListener("fetch", (event) => {
    if (event.request.headers.has("Range")) {
        return; // Safari plays a video only if the response has the requested part of the file
    }
    event.respondWith(caches.match(event.request, { ignoreSearch: true }).then((found) => found ?? fetch(event.request)));
});
