// Worker that decodes a picture. On the page's thread, decoding a large photograph would freeze the page.

import { decodePicture } from "./decode_picture";

self.onmessage = async ({ data: [file, screen] }: MessageEvent<Parameters<typeof decodePicture>>) => {
    const decoded = await decodePicture(file, screen).catch(() => null); // null: the picture cannot be decoded
    self.postMessage(decoded, decoded ? { transfer: [decoded.image, decoded.pixels.data.buffer] } : {});
};
