// Pipelines of an episode's functions, and the groups of what they bind.
import { PageError } from "./PageError.js";

/** @typedef {import("./EpisodeDocument.js").EpisodeDocument} EpisodeDocument */
/** @typedef {import("./EpisodeDocument.js").ShaderFunction} ShaderFunction */
/** @typedef {import("./EpisodeDocument.js").Resource} Resource */

/**
 * What a function's arguments are, by their own indices.
 * @typedef {object} Arguments
 * @property {(GPUBuffer | undefined)[]} [buffers]
 * @property {(GPUTextureView | undefined)[]} [textures]
 * @property {GPUBuffer} [viewport] its size in pixels, two floats; for functions that draw points
 */

/** The threads of a threadgroup along x; override constants 1 to 3 are its size. */
const threads = 64;
const threadgroupSize = { 1: threads, 2: 1, 3: 1 };

/** Bytes of the record of a grid of threads, which has three members of 16 bytes. */
const gridRecordBytes = 48;

/** @param {ShaderFunction} shader */
function constantsOf(shader) {
    return Object.fromEntries(
        Object.entries(threadgroupSize).filter(([id]) => shader.constants.includes(Number(id)))
    );
}

/**
 * @param {Resource} resource
 * @param {number} visibility
 * @returns {GPUBindGroupLayoutEntry}
 */
function layoutEntry(resource, visibility) {
    const entry = { binding: resource.binding, visibility };
    switch (resource.kind) {
        case "uniform":
        case "gridSize":
        case "viewportSize":
            return { ...entry, buffer: { type: "uniform" } };
        case "memory":
            return { ...entry, buffer: { type: resource.written ? "storage" : "read-only-storage" } };
        case "loopReport":
            return { ...entry, buffer: { type: "storage" } };
        case "texture":
            return { ...entry, texture: { sampleType: "float" } };
        case "sampler":
            return { ...entry, sampler: { type: "filtering" } };
    }
}

export class Pipelines {
    /**
     * @param {GPUDevice} device
     * @param {EpisodeDocument} document
     */
    constructor(device, document) {
        this.device = device;
        this.document = document;
        /** @type {Map<string, GPUShaderModule>} */
        this.modules = new Map();
        // An invocation that ran out of its loop budget writes here; it has ended without harm.
        this.loopReport = device.createBuffer({ size: 4, usage: GPUBufferUsage.STORAGE });
        /** @type {Map<string, GPUSampler>} */
        this.samplers = new Map();
        /** @type {Map<number, GPUBuffer>} */
        this.grids = new Map();
    }

    /** @param {string} name */
    functionNamed(name) {
        const shader = this.document.functions[name];
        if (!shader)
            throw new PageError("document", `The episode has no function ${name}.`);
        return shader;
    }

    /** @param {string} name */
    module(name) {
        const known = this.modules.get(name);
        if (known)
            return known;
        const { code } = this.functionNamed(name);
        const made = this.quietly(() => this.device.createShaderModule({ label: name, code }));
        this.modules.set(name, made);
        return made;
    }

    /** @param {[name: string, visibility: number][]} stages */
    layout(stages) {
        const entries = stages.flatMap(([name, visibility]) =>
            this.functionNamed(name).resources.map(each => layoutEntry(each, visibility))
        );
        return this.quietly(() => this.device.createBindGroupLayout({ entries }));
    }

    /**
     * An object that may be invalid. Its error is no error of what is drawn meanwhile: the promise of
     * the pipeline that is made of it tells it.
     * @template Made
     * @param {() => Made} make
     */
    quietly(make) {
        this.device.pushErrorScope("validation");
        const made = make();
        this.device.popErrorScope().catch(() => {}); // the device is lost
        return made;
    }

    /**
     * The pipeline of a vertex and a fragment function. Throws PageError.
     * @param {string} vertex
     * @param {string} fragment
     * @param {GPUColorTargetState} target
     * @param {Partial<GPURenderPipelineDescriptor>} more
     */
    async render(vertex, fragment, target, more = {}) {
        const layout = this.layout([
            [vertex, GPUShaderStage.VERTEX],
            [fragment, GPUShaderStage.FRAGMENT]
        ]);
        const pipeline = await this.made(() =>
            this.device.createRenderPipelineAsync({
                label: fragment,
                layout: this.quietly(() => this.device.createPipelineLayout({ bindGroupLayouts: [layout] })),
                vertex: {
                    module: this.module(vertex),
                    entryPoint: "main",
                    constants: constantsOf(this.functionNamed(vertex))
                },
                fragment: {
                    module: this.module(fragment),
                    entryPoint: "main",
                    constants: constantsOf(this.functionNamed(fragment)),
                    targets: [target]
                },
                ...more
            })
        );
        return new RenderPipeline(this, pipeline, layout, vertex, fragment);
    }

    /**
     * The pipeline of a kernel. Throws PageError.
     * @param {string} name
     */
    async kernel(name) {
        const layout = this.layout([[name, GPUShaderStage.COMPUTE]]);
        const pipeline = await this.made(() =>
            this.device.createComputePipelineAsync({
                label: name,
                layout: this.quietly(() => this.device.createPipelineLayout({ bindGroupLayouts: [layout] })),
                compute: {
                    module: this.module(name),
                    entryPoint: "main",
                    constants: constantsOf(this.functionNamed(name))
                }
            })
        );
        return new Kernel(this, pipeline, layout, name);
    }

    /**
     * @template Pipeline
     * @param {() => Promise<Pipeline>} make
     */
    async made(make) {
        try {
            return await make();
        } catch (error) {
            const reason = error instanceof Error ? error.message : String(error);
            throw new PageError("refused", `The graphics device refuses the episode: ${reason}`);
        }
    }

    /**
     * @param {ShaderFunction} shader
     * @param {Arguments} given
     * @param {number} count threads of the grid
     * @returns {GPUBindGroupEntry[]}
     */
    entries(shader, given, count = 0) {
        return shader.resources.map(resource => ({
            binding: resource.binding,
            resource: this.bound(resource, given, count)
        }));
    }

    /**
     * @param {Resource} resource
     * @param {Arguments} given
     * @param {number} count
     * @returns {GPUBindingResource}
     */
    bound(resource, given, count) {
        const found = this.givenResource(resource, given, count);
        if (!found)
            throw new PageError(
                "document",
                `The episode takes a ${resource.kind} with index ${resource.index}, which this player does not have.`
            );
        return found;
    }

    /**
     * @param {Resource} resource
     * @param {Arguments} given
     * @param {number} count
     */
    givenResource(resource, given, count) {
        switch (resource.kind) {
            case "texture":
                return given.textures?.[resource.index];
            case "sampler":
                return this.sampler(resource);
            case "loopReport":
                return { buffer: this.loopReport };
            case "gridSize":
                return { buffer: this.gridRecord(count) };
            case "viewportSize":
                return bufferBinding(given.viewport);
            default:
                return bufferBinding(given.buffers?.[resource.index]);
        }
    }

    /** @param {Resource} resource */
    sampler(resource) {
        const state = resource.sampler;
        if (!state)
            return undefined;
        const key = JSON.stringify(state);
        let sampler = this.samplers.get(key);
        if (!sampler) {
            sampler = this.device.createSampler({
                addressModeU: state.u,
                addressModeV: state.v,
                addressModeW: state.w,
                magFilter: state.mag,
                minFilter: state.min,
                mipmapFilter: state.mip,
                lodMinClamp: state.leastLevel,
                lodMaxClamp: state.mostLevel,
                maxAnisotropy: state.anisotropy
            });
            this.samplers.set(key, sampler);
        }
        return sampler;
    }

    destroy() {
        this.loopReport.destroy();
        this.grids.forEach(each => each.destroy());
    }

    /** @param {number} count threads */
    gridRecord(count) {
        let record = this.grids.get(count);
        if (!record) {
            record = uniformBuffer(this.device, gridRecordBytes);
            this.device.queue.writeBuffer(record, 0, new Uint32Array([count, 1, 1]));
            this.grids.set(count, record);
        }
        return record;
    }
}

/** @param {GPUBuffer | undefined} buffer */
function bufferBinding(buffer) {
    return buffer && { buffer };
}

/**
 * A buffer of at least `bytes` bytes. Records of WGSL have whole vectors of 16 bytes.
 * @param {GPUDevice} device
 * @param {number} bytes
 */
export function uniformBuffer(device, bytes) {
    return device.createBuffer({
        size: Math.ceil(bytes / 16) * 16,
        usage: GPUBufferUsage.UNIFORM | GPUBufferUsage.STORAGE | GPUBufferUsage.COPY_DST
    });
}

class RenderPipeline {
    /**
     * @param {Pipelines} pipelines
     * @param {GPURenderPipeline} pipeline
     * @param {GPUBindGroupLayout} layout
     * @param {string} vertex
     * @param {string} fragment
     */
    constructor(pipelines, pipeline, layout, vertex, fragment) {
        this.pipelines = pipelines;
        this.pipeline = pipeline;
        this.layout = layout;
        this.vertex = pipelines.functionNamed(vertex);
        this.fragment = pipelines.functionNamed(fragment);
    }

    /**
     * @param {GPURenderPassEncoder} pass
     * @param {{vertex?: Arguments, fragment?: Arguments}} given
     * @param {number} vertices
     * @param {number} instances
     */
    draw(pass, { vertex = {}, fragment = {} }, vertices, instances = 1) {
        pass.setPipeline(this.pipeline);
        pass.setBindGroup(
            0,
            this.pipelines.device.createBindGroup({
                layout: this.layout,
                entries: [
                    ...this.pipelines.entries(this.vertex, vertex),
                    ...this.pipelines.entries(this.fragment, fragment)
                ]
            })
        );
        pass.draw(vertices, instances);
    }
}

class Kernel {
    /**
     * @param {Pipelines} pipelines
     * @param {GPUComputePipeline} pipeline
     * @param {GPUBindGroupLayout} layout
     * @param {string} name
     */
    constructor(pipelines, pipeline, layout, name) {
        this.pipelines = pipelines;
        this.pipeline = pipeline;
        this.layout = layout;
        this.shader = pipelines.functionNamed(name);
    }

    /**
     * @param {GPUComputePassEncoder} pass
     * @param {Arguments} given
     * @param {number} count threads
     */
    dispatch(pass, given, count) {
        pass.setPipeline(this.pipeline);
        pass.setBindGroup(
            0,
            this.pipelines.device.createBindGroup({
                layout: this.layout,
                entries: this.pipelines.entries(this.shader, given, count)
            })
        );
        pass.dispatchWorkgroups(Math.ceil(count / threads));
    }
}
