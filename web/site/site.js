// Runs at the end of each page, before the deferred script of the element.

if (location.protocol === "file:") {
    // Browsers do not let WebGL read image files of a page from disk. pictures.js has the same images as data URLs.
    document.write('<script src="pictures.js"><\/script>');
} else {
    // Only a served page can be installed.
    const manifest = document.createElement("link");
    manifest.rel = "manifest";
    manifest.href = "manifest.webmanifest";
    document.head.append(manifest);
    navigator.serviceWorker?.register("service_worker.js");
}
