// The part of WebGPU that the player uses, for the check of types. TypeScript's own declarations of
// browsers do not have it yet.

type GPUTextureFormat = string;
type GPUAddressMode = "clamp-to-edge" | "repeat" | "mirror-repeat";
type GPUFilterMode = "nearest" | "linear";

interface Navigator {
    readonly gpu: GPU;
}
interface GPU {
    requestAdapter(): Promise<GPUAdapter | null>;
    getPreferredCanvasFormat(): GPUTextureFormat;
}
interface GPULimits {
    readonly maxBufferSize: number;
    readonly maxStorageBufferBindingSize: number;
    readonly maxTextureDimension2D: number;
}
interface GPUError {
    readonly message: string;
}
declare class GPUOutOfMemoryError implements GPUError {
    readonly message: string;
}
interface GPUAdapter {
    readonly features: ReadonlySet<string>;
    readonly limits: GPULimits;
    requestDevice(descriptor: {
        requiredFeatures: string[];
        requiredLimits: Partial<GPULimits>;
    }): Promise<GPUDevice>;
}
interface GPUDevice {
    readonly features: ReadonlySet<string>;
    readonly limits: GPULimits;
    readonly queue: GPUQueue;
    pushErrorScope(filter: "validation" | "out-of-memory" | "internal"): void;
    popErrorScope(): Promise<GPUError | null>;
    onuncapturederror: ((event: { readonly error: GPUError }) => void) | null;
    readonly lost: Promise<{ readonly reason: "unknown" | "destroyed"; readonly message: string }>;
    createBuffer(descriptor: { size: number; usage: number }): GPUBuffer;
    createTexture(descriptor: {
        size: GPUExtent;
        format: GPUTextureFormat;
        usage: number;
        sampleCount?: number;
    }): GPUTexture;
    createSampler(descriptor: {
        addressModeU: GPUAddressMode;
        addressModeV: GPUAddressMode;
        addressModeW: GPUAddressMode;
        magFilter: GPUFilterMode;
        minFilter: GPUFilterMode;
        mipmapFilter: GPUFilterMode;
        lodMinClamp: number;
        lodMaxClamp: number;
        maxAnisotropy: number;
    }): GPUSampler;
    createShaderModule(descriptor: { label: string; code: string }): GPUShaderModule;
    createBindGroupLayout(descriptor: { entries: GPUBindGroupLayoutEntry[] }): GPUBindGroupLayout;
    createPipelineLayout(descriptor: { bindGroupLayouts: GPUBindGroupLayout[] }): GPUPipelineLayout;
    createBindGroup(descriptor: {
        layout: GPUBindGroupLayout;
        entries: GPUBindGroupEntry[];
    }): GPUBindGroup;
    createRenderPipelineAsync(descriptor: GPURenderPipelineDescriptor): Promise<GPURenderPipeline>;
    createComputePipelineAsync(descriptor: {
        label: string;
        layout: GPUPipelineLayout;
        compute: GPUProgrammableStage;
    }): Promise<GPUComputePipeline>;
    createCommandEncoder(): GPUCommandEncoder;
    destroy(): void;
}
interface GPUQueue {
    writeBuffer(buffer: GPUBuffer, offset: number, data: ArrayBuffer | ArrayBufferView): void;
    writeTexture(
        target: { texture: GPUTexture },
        data: ArrayBufferView,
        layout: object,
        size: GPUExtent
    ): void;
    copyExternalImageToTexture(
        source: { source: ImageBitmap | HTMLVideoElement },
        target: { texture: GPUTexture; premultipliedAlpha: boolean },
        size: GPUExtent
    ): void;
    submit(commands: GPUCommandBuffer[]): void;
    onSubmittedWorkDone(): Promise<undefined>;
}

interface GPUCommandBuffer {
    readonly label: string;
}
interface GPUShaderModule {
    readonly label: string;
}
interface GPUSampler {
    readonly label: string;
}
interface GPUBindGroup {
    readonly label: string;
}
interface GPUBindGroupLayout {
    readonly label: string;
}
interface GPUPipelineLayout {
    readonly label: string;
}
interface GPURenderPipeline {
    readonly label: string;
}
interface GPUComputePipeline {
    readonly label: string;
}
interface GPUTextureView {
    readonly label: string;
}
interface GPUBuffer {
    mapAsync(mode: number): Promise<undefined>;
    getMappedRange(): ArrayBuffer;
    destroy(): void;
}
interface GPUTexture {
    readonly width: number;
    readonly height: number;
    createView(): GPUTextureView;
    destroy(): void;
}

type GPUExtent = { width: number; height: number } | [number, number];
type GPUColor = number[];
type GPUBindingResource = GPUSampler | GPUTextureView | { buffer: GPUBuffer };
interface GPUBindGroupEntry {
    binding: number;
    resource: GPUBindingResource;
}
interface GPUBindGroupLayoutEntry {
    binding: number;
    visibility: number;
    buffer?: { type: "uniform" | "storage" | "read-only-storage" };
    texture?: { sampleType: "float" };
    sampler?: { type: "filtering" };
}
interface GPUProgrammableStage {
    module: GPUShaderModule;
    entryPoint: string;
    constants: Record<string, number>;
}
interface GPUBlendComponent {
    operation: "add";
    srcFactor: "one";
    dstFactor: "one";
}
interface GPUColorTargetState {
    format: GPUTextureFormat;
    blend?: { color: GPUBlendComponent; alpha: GPUBlendComponent };
}
interface GPURenderPipelineDescriptor {
    label: string;
    layout: GPUPipelineLayout;
    vertex: GPUProgrammableStage;
    fragment: GPUProgrammableStage & { targets: GPUColorTargetState[] };
    primitive?: { topology: "triangle-strip" };
    multisample?: { count: number };
    depthStencil?: {
        format: GPUTextureFormat;
        depthWriteEnabled: boolean;
        depthCompare: "less" | "always";
    };
}
interface GPUCommandEncoder {
    beginRenderPass(descriptor: {
        colorAttachments: {
            view: GPUTextureView;
            resolveTarget?: GPUTextureView;
            loadOp: "clear" | "load";
            storeOp: "store" | "discard";
            clearValue: GPUColor;
        }[];
        depthStencilAttachment?: {
            view: GPUTextureView;
            depthLoadOp: "clear";
            depthStoreOp: "discard";
            depthClearValue: number;
        };
    }): GPURenderPassEncoder;
    beginComputePass(): GPUComputePassEncoder;
    copyTextureToTexture(
        source: { texture: GPUTexture },
        target: { texture: GPUTexture },
        size: GPUExtent
    ): void;
    copyTextureToBuffer(
        source: { texture: GPUTexture },
        target: { buffer: GPUBuffer; bytesPerRow: number },
        size: GPUExtent
    ): void;
    copyBufferToBuffer(
        source: GPUBuffer,
        from: number,
        target: GPUBuffer,
        to: number,
        size: number
    ): void;
    finish(): GPUCommandBuffer;
}
interface GPURenderPassEncoder {
    setPipeline(pipeline: GPURenderPipeline): void;
    setBindGroup(group: number, bindings: GPUBindGroup): void;
    draw(vertices: number, instances: number): void;
    end(): void;
}
interface GPUComputePassEncoder {
    setPipeline(pipeline: GPUComputePipeline): void;
    setBindGroup(group: number, bindings: GPUBindGroup): void;
    dispatchWorkgroups(x: number): void;
    end(): void;
}
interface GPUCanvasContext {
    configure(configuration: {
        device: GPUDevice;
        format: GPUTextureFormat;
        usage: number;
        alphaMode: "opaque";
    }): void;
    getCurrentTexture(): GPUTexture;
}

declare const GPUBufferUsage: {
    readonly MAP_READ: number;
    readonly COPY_SRC: number;
    readonly COPY_DST: number;
    readonly UNIFORM: number;
    readonly STORAGE: number;
};
declare const GPUTextureUsage: {
    readonly COPY_SRC: number;
    readonly COPY_DST: number;
    readonly TEXTURE_BINDING: number;
    readonly RENDER_ATTACHMENT: number;
};
declare const GPUShaderStage: {
    readonly VERTEX: number;
    readonly FRAGMENT: number;
    readonly COMPUTE: number;
};
declare const GPUMapMode: { readonly READ: number };
