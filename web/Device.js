// The device of WebGPU that a page draws with.
import { PageError } from "./PageError.js";

/** @typedef {import("./EpisodeDocument.js").EpisodeDocument} EpisodeDocument */

/** Features that the player uses if the device has them. */
const usedFeatures = ["float32-filterable"];

/**
 * The features that the episode's functions require, and those that the player uses if they exist.
 * @param {EpisodeDocument} document
 * @param {GPUAdapter} adapter
 */
function featuresOf(document, adapter) {
    const required = new Set(Object.values(document.functions).flatMap(each => each.features));
    for (const feature of required)
        if (!adapter.features.has(feature))
            throw new PageError("absent", `This device has no ${feature}, which the episode requires.`);
    return [...required, ...usedFeatures.filter(each => adapter.features.has(each))];
}

/**
 * A buffer of all particles may need more than the limits that every device has.
 * @param {EpisodeDocument} document
 * @param {GPUAdapter} adapter
 */
function limitsOf(document, adapter) {
    const bytes = document.particles * document.stride;
    const most = Math.min(adapter.limits.maxBufferSize, adapter.limits.maxStorageBufferBindingSize);
    if (bytes > most)
        throw new PageError(
            "refused",
            `${document.particles} particles of ${document.stride} bytes are too many for this device: they take ${bytes} bytes, and it has room for ${most}.`
        );
    return { maxBufferSize: Math.max(bytes, 256 << 20), maxStorageBufferBindingSize: Math.max(bytes, 128 << 20) };
}

/**
 * Whether the device, which was opened for another episode, has what this one needs.
 * @param {GPUDevice} device
 * @param {EpisodeDocument} document
 */
export function suits(device, document) {
    const bytes = document.particles * document.stride;
    return (
        Object.values(document.functions).every(({ features }) => features.every(each => device.features.has(each))) &&
        bytes <= Math.min(device.limits.maxBufferSize, device.limits.maxStorageBufferBindingSize)
    );
}

/**
 * A device for the episode. Throws PageError.
 * @param {EpisodeDocument} document
 * @returns {Promise<GPUDevice>}
 */
export async function openDevice(document) {
    if (!navigator.gpu)
        throw new PageError(
            "absent",
            globalThis.isSecureContext === false
                ? "Browsers draw episodes only on pages with an address of https, or from a file."
                : "This browser has no WebGPU, with which episodes are drawn."
        );
    const adapter = await navigator.gpu.requestAdapter();
    if (!adapter)
        throw new PageError("absent", "This browser has found no graphics device for WebGPU.");
    try {
        return await adapter.requestDevice({
            requiredFeatures: featuresOf(document, adapter),
            requiredLimits: limitsOf(document, adapter)
        });
    } catch (error) {
        if (error instanceof PageError)
            throw error;
        throw new PageError("refused", "The graphics device of this computer could not be opened.");
    }
}
