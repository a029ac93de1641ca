// Replaces the addresses of images and videos by data URLs. The build fills in the name in capital letters.

const data = DATA;

for (const element of document.querySelectorAll("velmora-water[src], velmora-water > [src], velmora-water > video > source")) {
    const url = data[element.getAttribute("src")];
    if (url) {
        element.src = url;
    }
}
