// The channels of an episode with `Inputs`: pictures, and the camera.

/** @typedef {import("./EpisodeDocument.js").EpisodeDocument} EpisodeDocument */

export const firstChannelTexture = 1; // the texture before is the spectrum
export const channelCount = 4;

const asItIs = /** @type {const} */ ({ colorSpaceConversion: "none" });

/**
 * The numbers of the channels that the episode reads.
 * @param {EpisodeDocument} document
 */
export function readChannels(document) {
    const textures = (document.functions.tw_fragment?.resources ?? [])
        .filter(each => each.kind === "texture")
        .map(each => each.index);
    return document.usesInputs
        ? Array.from({ length: channelCount }, (_, channel) => channel).filter(channel =>
              textures.includes(firstChannelTexture + channel)
          )
        : [];
}

export class Channels {
    /** @param {GPUDevice} device */
    constructor(device) {
        this.device = device;
        /** @type {(GPUTexture | null)[]} */
        this.textures = Array(channelCount).fill(null);
        /** @type {(HTMLVideoElement | null)[]} */
        this.cameras = Array(channelCount).fill(null);
        this.isDestroyed = false; // a visitor may permit a camera after the end
    }

    /**
     * Throws if the browser does not read the picture.
     * @param {number} channel
     * @param {Blob} file
     */
    async showPicture(channel, file) {
        const picture = await this.fitting(await createImageBitmap(file, asItIs));
        if (!this.isDestroyed) {
            this.clear(channel);
            this.copy(channel, picture, picture.width, picture.height);
        }
        picture.close();
    }

    /**
     * The picture, smaller if the device has no texture of its size.
     * @param {ImageBitmap} picture
     */
    async fitting(picture) {
        const longest = Math.max(picture.width, picture.height);
        const most = this.device.limits.maxTextureDimension2D;
        if (longest <= most)
            return picture;
        const side = /** @param {number} length */ length => Math.max(1, Math.floor((length * most) / longest));
        const smaller = await createImageBitmap(picture, {
            ...asItIs,
            resizeWidth: side(picture.width),
            resizeHeight: side(picture.height),
            resizeQuality: "high"
        });
        picture.close();
        return smaller;
    }

    /**
     * Asks the visitor for the camera. Throws if it is refused.
     * @param {number} channel
     */
    async showCamera(channel) {
        const stream = await navigator.mediaDevices.getUserMedia({ video: true });
        const video = document.createElement("video");
        video.muted = true;
        video.srcObject = stream;
        const isShown = await video.play().then(
            () => !this.isDestroyed,
            () => false
        );
        if (!isShown) {
            stream.getTracks().forEach(track => track.stop());
            throw new Error("The camera is not shown.");
        }
        this.clear(channel);
        this.cameras[channel] = video;
    }

    /** Takes the newest pictures of the cameras. */
    update() {
        this.cameras.forEach((camera, channel) => {
            if (camera && camera.readyState >= camera.HAVE_CURRENT_DATA && camera.videoWidth > 0)
                this.copy(channel, camera, camera.videoWidth, camera.videoHeight);
        });
    }

    /**
     * @param {number} channel
     * @param {ImageBitmap | HTMLVideoElement} source
     * @param {number} width
     * @param {number} height
     */
    copy(channel, source, width, height) {
        let texture = this.textures[channel];
        if (!texture || texture.width !== width || texture.height !== height) {
            texture?.destroy();
            texture = this.device.createTexture({
                size: { width, height },
                format: "rgba8unorm",
                usage:
                    GPUTextureUsage.TEXTURE_BINDING |
                    GPUTextureUsage.COPY_DST |
                    GPUTextureUsage.RENDER_ATTACHMENT
            });
            this.textures[channel] = texture;
        }
        this.device.queue.copyExternalImageToTexture(
            { source },
            { texture, premultipliedAlpha: true },
            { width, height }
        );
    }

    /** @param {number} channel */
    clear(channel) {
        const stream = this.cameras[channel]?.srcObject;
        if (stream instanceof MediaStream)
            stream.getTracks().forEach(track => track.stop());
        this.cameras[channel] = null;
        this.textures[channel]?.destroy();
        this.textures[channel] = null;
    }

    destroy() {
        this.isDestroyed = true;
        this.textures.forEach((_, channel) => this.clear(channel));
    }
}
