// The document of an episode: what `tarnwick web` writes, and a page plays. docs/web.md describes
// its members.
import { PageError } from "./PageError.js";

/**
 * A resource of a function, at a binding of group 0.
 * @typedef {object} Resource
 * @property {"uniform" | "memory" | "texture" | "sampler" | "loopReport" | "gridSize" | "viewportSize"} kind
 * @property {number} binding
 * @property {number} index    of the argument: buffer(n), texture(n)
 * @property {boolean} written by the function
 * @property {SamplerRecord} [sampler]
 */

/**
 * @typedef {object} SamplerRecord
 * @property {GPUAddressMode} u
 * @property {GPUAddressMode} v
 * @property {GPUAddressMode} w
 * @property {GPUFilterMode} mag
 * @property {GPUFilterMode} min
 * @property {GPUFilterMode} mip
 * @property {number} leastLevel
 * @property {number} mostLevel
 * @property {number} anisotropy
 */

/**
 * @typedef {object} ShaderFunction
 * @property {"vertex" | "fragment" | "kernel"} stage
 * @property {string} code          WGSL; the entry point is `main`
 * @property {Resource[]} resources
 * @property {number[]} constants   ids of the override constants that the code declares
 * @property {string[]} features    of WebGPU that the code enables
 */

/**
 * A key of a parameter: its value at a time, and how it moves to the next key.
 * @typedef {object} Key
 * @property {number} time seconds
 * @property {number} value
 * @property {"linear" | "smooth" | "hold"} ease
 */

/**
 * @typedef {object} Param
 * @property {string} name
 * @property {number} value  the base value: of the settings, else the default
 * @property {number} min
 * @property {number} max
 * @property {string} detail the description; may be empty
 * @property {Key[]} keys    ascending in time; they override the base value
 */

/**
 * @typedef {object} EpisodeDocument
 * @property {number} version
 * @property {"fragment" | "particles" | "grid"} kind
 * @property {string} title
 * @property {string} teaches one line; may be empty
 * @property {number} still   seconds
 * @property {number} length  seconds
 * @property {Param[]} params in the order of the record
 * @property {boolean} usesInputs
 * @property {boolean} readsPrevious
 * @property {boolean} hasSound
 * @property {number} particles 0 for other kinds
 * @property {number} stride    bytes of a particle
 * @property {number} grid      cells per side; 0 for other kinds
 * @property {boolean} hasBackground
 * @property {Record<string, ShaderFunction>} functions by name
 */

export const documentVersion = 1;

/**
 * The document in a text of JSON, with its members checked as far as the player relies on them.
 * @param {string} text
 * @returns {EpisodeDocument}
 */
export function parseDocument(text) {
    let document;
    try {
        document = JSON.parse(text);
    } catch {
        throw new PageError("document", "The file is not an episode: it is not JSON.");
    }
    if (typeof document !== "object" || document === null || !("functions" in document))
        throw new PageError("document", "The file is not an episode: it has no functions.");
    if (document.version !== documentVersion)
        throw new PageError(
            "document",
            `The episode has version ${document.version} of the document; this player reads version ${documentVersion}.`
        );
    return document;
}
