// The surface of a grid episode: one pass with depth and four samples per pixel.
import { uniformBuffer } from "./Pipelines.js";

/** @typedef {import("./Pipelines.js").Pipelines} Pipelines */
/** @typedef {{width: number, height: number}} Size */

const samples = 4;
const colorFormat = "bgra8unorm";
const depthFormat = "depth32float";
/** The colour behind the grid: nearly black, slightly warm. */
const clearColor = [0.035, 0.027, 0.031, 1];

/**
 * @param {Pipelines} pipelines
 * @param {string} vertex
 * @param {string} fragment
 * @param {boolean} isSurface
 */
function pipeline(pipelines, vertex, fragment, isSurface) {
    return pipelines.render(
        vertex,
        fragment,
        { format: colorFormat },
        {
            multisample: { count: samples },
            depthStencil: {
                format: depthFormat,
                depthWriteEnabled: isSurface,
                depthCompare: isSurface ? "less" : "always"
            }
        }
    );
}

export class Grid {
    /** @param {Pipelines} pipelines */
    static async make(pipelines) {
        const [surface, background] = await Promise.all([
            pipeline(pipelines, "tw_grid_vertex", "tw_grid_fragment", true),
            pipelines.document.hasBackground
                ? pipeline(pipelines, "tw_vertex", "tw_background", false)
                : null
        ]);
        return new Grid(pipelines, surface, background);
    }

    /**
     * @param {Pipelines} pipelines
     * @param {Awaited<ReturnType<typeof pipeline>>} surface
     * @param {Awaited<ReturnType<typeof pipeline>> | null} background
     */
    constructor(pipelines, surface, background) {
        this.device = pipelines.device;
        this.surface = surface;
        this.background = background;
        this.cells = pipelines.document.grid;
        this.cellsRecord = uniformBuffer(this.device, 4);
        this.device.queue.writeBuffer(this.cellsRecord, 0, new Uint32Array([this.cells]));
        /** @type {Size} */
        this.size = { width: 0, height: 0 };
        /** @type {{color: GPUTexture, depth: GPUTexture, resolved: GPUTexture} | null} */
        this.textures = null;
    }

    /** @param {Size} size pixels */
    fit(size) {
        if (this.size.width === size.width && this.size.height === size.height)
            return;
        this.destroyTextures();
        this.size = { ...size };
        const attachment = GPUTextureUsage.RENDER_ATTACHMENT;
        this.textures = {
            color: this.device.createTexture({
                size,
                format: colorFormat,
                sampleCount: samples,
                usage: attachment
            }),
            depth: this.device.createTexture({
                size,
                format: depthFormat,
                sampleCount: samples,
                usage: attachment
            }),
            resolved: this.device.createTexture({
                size,
                format: colorFormat,
                usage: attachment | GPUTextureUsage.TEXTURE_BINDING
            })
        };
    }

    /**
     * Draws the surface, and returns its picture.
     * @param {GPUCommandEncoder} commands
     * @param {import("./Records.js").RecordPair} records
     */
    draw(commands, { uniforms, params }) {
        if (!this.textures)
            throw new Error("A grid is drawn before its size is known.");
        const { color, depth, resolved } = this.textures;
        const picture = resolved.createView();
        const pass = commands.beginRenderPass({
            colorAttachments: [
                {
                    view: color.createView(),
                    resolveTarget: picture,
                    loadOp: "clear",
                    storeOp: "discard",
                    clearValue: clearColor
                }
            ],
            depthStencilAttachment: {
                view: depth.createView(),
                depthLoadOp: "clear",
                depthStoreOp: "discard",
                depthClearValue: 1
            }
        });
        const fragment = { buffers: [uniforms, params] };
        this.background?.draw(pass, { fragment }, 3);
        this.surface.draw(
            pass,
            { vertex: { buffers: [uniforms, params, this.cellsRecord] }, fragment },
            this.cells * this.cells * 6
        );
        pass.end();
        return picture;
    }

    destroy() {
        this.destroyTextures();
        this.cellsRecord.destroy();
    }

    destroyTextures() {
        if (this.textures)
            Object.values(this.textures).forEach(each => each.destroy());
        this.textures = null;
    }
}
