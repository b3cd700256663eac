// The stills of a list's episodes. The browser draws them one after the other, when they come into view.
import { openDevice } from "./Device.js";
import { element } from "./Elements.js";
import { parseDocument } from "./EpisodeDocument.js";
import { Frames } from "./Frames.js";
import { oneAtATime } from "./LiveEvents.js";
import { Values } from "./Values.js";

const stillSize = { width: 640, height: 360 };

/**
 * The pixels of the still, with the values of the settings. Throws if it cannot be drawn.
 * @param {string} text of the document
 */
async function stillOf(text) {
    const episode = parseDocument(text);
    const device = await openDevice(episode);
    try {
        const frames = await Frames.make(device, episode, "rgba8unorm");
        return await frames.still(episode.still, new Values(episode.params), stillSize);
    } finally {
        device.destroy();
    }
}

export class LiveStills {
    constructor() {
        /** @type {Map<Element, string>} addresses of documents by canvas */
        this.addresses = new Map();
        /** @type {Set<Element>} canvases in view */
        this.waiting = new Set();
        this.view = new IntersectionObserver(entries => {
            for (const { target, isIntersecting } of entries)
                this.waiting[isIntersecting ? "add" : "delete"](target);
            this.draw();
        });
        this.draw = oneAtATime(async () => {
            for (const canvas of this.waiting)
                await this.drawOne(/** @type {HTMLCanvasElement} */ (canvas));
        });
    }

    /**
     * A canvas that gets the still of a document.
     * @param {string} address
     * @param {HTMLCanvasElement} [canvas] that shows the still of a version before
     */
    canvasOf(address, canvas) {
        const shown = canvas ?? element("canvas", { "aria-hidden": "true" });
        this.addresses.set(shown, address);
        this.view.unobserve(shown); // so that it is reported once more
        this.view.observe(shown);
        return shown;
    }

    /** @param {HTMLCanvasElement} canvas that keeps what it shows if the episode cannot be drawn */
    async drawOne(canvas) {
        const address = this.addresses.get(canvas);
        this.waiting.delete(canvas);
        this.view.unobserve(canvas);
        this.addresses.delete(canvas);
        const answer = address ? await fetch(address).catch(() => null) : null;
        const pixels = answer?.ok ? await answer.text().then(stillOf).catch(() => null) : null;
        if (!pixels)
            return;
        Object.assign(canvas, stillSize);
        canvas.getContext("2d")?.putImageData(new ImageData(pixels, stillSize.width, stillSize.height), 0, 0);
    }
}
