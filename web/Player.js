// Plays an episode on a canvas: device, frames, clock and sound, without the controls around it.
import { Clock } from "./Clock.js";
import { openDevice, suits } from "./Device.js";
import { Frames } from "./Frames.js";
import { HeardSound } from "./HeardSound.js";
import { playedMoment } from "./Moments.js";
import { Pace } from "./Pace.js";
import { PageError } from "./PageError.js";
import { SoundKernel, SoundPlayer, sampleRate } from "./Sound.js";
import { Values } from "./Values.js";

/** @typedef {import("./EpisodeDocument.js").EpisodeDocument} EpisodeDocument */
/** @typedef {{width: number, height: number}} Size */

/** Longer sides of a canvas only cost time on the screens of telephones. */
const longestSide = 2560;

/** What a player reports to the page around it. */
export class PlayerEvents {
    /** A frame was drawn. */
    drawn() {}
    /** @param {PageError} _ after which nothing is drawn */
    failed(_) {}
}

export class Player {
    /**
     * Opens the device and makes the program. Throws PageError.
     * @param {EpisodeDocument} document
     * @param {HTMLCanvasElement} canvas
     * @param {PlayerEvents} events
     */
    static async make(document, canvas, events) {
        const context = /** @type {GPUCanvasContext | null} */ (
            /** @type {unknown} */ (canvas.getContext("webgpu"))
        );
        if (!context && navigator.gpu)
            throw new PageError("absent", "This browser shows no pictures of WebGPU on a page.");
        const player = new Player(document, canvas, events);
        try {
            await player.open(/** @type {GPUCanvasContext} */ (context));
        } catch (error) {
            player.close();
            throw error;
        }
        return player;
    }

    /**
     * @param {EpisodeDocument} document
     * @param {HTMLCanvasElement} canvas
     * @param {PlayerEvents} events
     */
    constructor(document, canvas, events) {
        this.document = document;
        this.canvas = canvas;
        this.events = events;
        this.clock = new Clock();
        this.values = new Values(document.params);
        this.pace = new Pace();
        /** @type {[number, number] | null} */
        this.mouse = null;
        this.volume = 0;
        /** @type {Promise<void>} */
        this.work = Promise.resolve();
        this.isClosed = false;
        this.isHidden = false;
        this.request = 0;
        this.jumps = 0;
        /** @type {HeardSound | null} */
        this.heard = null;
        /** @type {"nothing" | "own" | "microphone" | File} */
        this.heardSource = "nothing";
        /** @type {AudioContext | null} */
        this.audio = null;
        /** @type {SoundPlayer | null} */
        this.soundPlayer = null;
        /** @type {Frames | null} */
        this.soundFrames = null; // whose sound is played, or is about to be
        this.hearings = 0;
    }

    /** @param {GPUCanvasContext} context */
    async open(context) {
        this.device = await openDevice(this.document);
        if (this.isClosed)
            return this.device.destroy();
        // A device is lost to a fault of the driver, or if it is taken from the browser.
        this.device.lost.then(({ reason }) => {
            if (reason !== "destroyed")
                this.fail(lost());
        });
        // Without an answer to this event, what follows an error would be a black picture.
        this.device.onuncapturederror = ({ error }) => this.fail(refused(error));
        this.format = navigator.gpu.getPreferredCanvasFormat();
        this.context = context;
        context.configure({
            device: this.device,
            format: this.format,
            usage: GPUTextureUsage.RENDER_ATTACHMENT | GPUTextureUsage.COPY_DST,
            alphaMode: "opaque"
        });
        this.frames = await Frames.make(this.device, this.document, this.format);
    }

    /**
     * Plays another version of the program. The time goes on, what the visitor chose stays with the
     * parameters' names, and the state goes on as in Frames.follow. Throws PageError if the device
     * refuses the program; the last one then goes on. Returns false if a device must be opened for
     * it.
     * @param {EpisodeDocument} document
     */
    async replace(document) {
        const { device, format } = this;
        if (this.isClosed || !device || !format || !suits(device, document))
            return false;
        const next = await Frames.make(device, document, format);
        await this.exclusively(async () => {
            if (this.frames && !this.isClosed) {
                this.closeSound();
                next.follow(this.frames);
                this.frames.destroy();
                this.frames = next;
                this.document = document;
                this.values = this.values.following(document.params);
                this.pace = new Pace();
            } else next.destroy();
        });
        await this.replaceSound();
        this.redraw();
        return true;
    }

    /** The sound of another program follows. */
    async replaceSound() {
        if (!this.document.usesInputs && this.heard)
            await this.hear("nothing"); // which also switches off the microphone
        if (this.volume > 0)
            await this.setVolume(this.volume);
        if (this.heardSource === "own" && this.soundPlayer)
            await this.hear("own");
    }

    closeSound() {
        if (this.heardSource === "own")
            this.heard?.disconnect();
        this.soundPlayer?.close();
        this.soundPlayer = null;
        this.soundFrames = null;
    }

    get time() {
        return this.clock.time;
    }

    get isPlaying() {
        return this.clock.isPlaying;
    }

    /**
     * Goes on where another player is, with the values that its visitor chose.
     * @param {Player} other
     */
    follow(other) {
        this.clock.seek(other.time);
        this.values = other.values.following(this.document.params);
        [this.audio, other.audio] = [other.audio, null];
        if (this.audio)
            this.audio.onstatechange = () => this.followSound();
        this.mouse = other.mouse;
        if (other.isPlaying)
            this.play();
        this.setVolume(other.volume);
        this.redraw();
    }

    play() {
        if (this.isPlaying || this.isClosed)
            return;
        this.clock.play();
        this.followSound();
        this.redraw();
    }

    pause() {
        this.clock.pause();
        this.soundPlayer?.stop();
    }

    /** @param {number} time seconds */
    seek(time) {
        ++this.jumps;
        this.clock.seek(time);
        this.followSound();
        this.redraw();
    }

    /**
     * @param {number} index of the parameter
     * @param {number | undefined} value undefined: that of the settings again
     */
    choose(index, value) {
        this.values.choose(index, value); // the next piece of the sound has it too
        this.redraw();
    }

    /** Draws a frame soon. */
    redraw() {
        if (!this.request && !this.isClosed)
            this.request = requestAnimationFrame(now =>
                this.frame(now / 1000).catch(error => this.fail(error))
            );
    }

    /** @param {number} now seconds */
    async frame(now) {
        this.request = 0;
        await this.exclusively(() => this.drawFrame(now));
        if (this.isClosed)
            return;
        if (this.pace.isTooSlow)
            return this.fail(new PageError("refused", "The episode is too slow for this device."));
        this.events.drawn();
        if (this.isPlaying && !this.isHidden)
            this.redraw();
    }

    /** @param {number} now seconds */
    async drawFrame(now) {
        const { device, frames, context } = this;
        if (this.isClosed || !device || !frames || !context)
            return;
        this.fitCanvas();
        const moment = playedMoment(this.advance(now), this.mouse);
        const size = { width: this.canvas.width, height: this.canvas.height };
        // After a jump all steps up to its time are performed first, unless there is another jump.
        const jump = this.jumps;
        if (!this.isPlaying || frames.isBehind(moment, size))
            await frames.warm(moment, this.values, size, () => !this.isClosed && jump === this.jumps);
        if (this.isClosed)
            return;
        frames.inputs?.hear(this.heard?.now() ?? null);
        frames.inputs?.channels.update();
        const began = performance.now();
        frames.draw(context.getCurrentTexture(), moment, this.values);
        await device.queue.onSubmittedWorkDone();
        this.pace.note((performance.now() - began) / 1000);
    }

    /**
     * The time of the frame. The ear hears a gap that the eye does not see, so the picture follows
     * the sound.
     * @param {number} now seconds
     */
    advance(now) {
        const time = this.clock.advance(now);
        const heard = this.isPlaying ? this.soundPlayer?.time ?? null : null;
        if (heard === null)
            return time;
        this.clock.seek(heard);
        return this.clock.time;
    }

    /**
     * Frames and stills share particles, so one is drawn after the other.
     * @template Result
     * @param {() => Promise<Result>} draw
     */
    exclusively(draw) {
        const result = this.work.then(draw);
        this.work = result.then(
            () => {},
            error => this.fail(error)
        );
        return result;
    }

    fitCanvas() {
        const { canvas } = this;
        const ratio = globalThis.devicePixelRatio || 1;
        const width = canvas.clientWidth * ratio * this.pace.scale;
        const height = canvas.clientHeight * ratio * this.pace.scale;
        const shrink = Math.min(1, longestSide / Math.max(width, height, 1));
        const size = [width, height].map(side => Math.max(1, Math.round(side * shrink)));
        if (canvas.width !== size[0] || canvas.height !== size[1])
            [canvas.width, canvas.height] = size;
    }

    /**
     * The still at a time, as pixels; see Frames.still.
     * @param {number} time
     * @param {Size} size
     */
    still(time, size) {
        return this.exclusively(async () => {
            if (!this.frames)
                throw new PageError("refused", "The episode is not drawn.");
            return this.frames.still(time, this.values, size);
        });
    }

    /** Browsers make sound only after an action of the visitor, so this is called in answer to one. */
    audioContext() {
        if (!this.audio) {
            this.audio = new AudioContext({ sampleRate });
            // A telephone call suspends it too; the sound then goes on where the picture is.
            this.audio.onstatechange = () => this.followSound();
        }
        this.audio.resume().catch(() => {});
        return this.audio;
    }

    /** @param {number} volume linear, from 0 to 1; call it in answer to the visitor's action */
    async setVolume(volume) {
        this.volume = volume;
        if (volume > 0 && this.document.hasSound)
            await this.openSound(this.audioContext());
        this.soundPlayer?.setVolume(this.volume);
        this.followSound();
    }

    /**
     * Makes the player of the sound, once for a program.
     * @param {AudioContext} context
     */
    async openSound(context) {
        const { frames } = this;
        if (!frames || this.soundFrames === frames)
            return;
        this.soundFrames = frames;
        const kernel = await SoundKernel.make(frames.pipelines);
        if (this.isClosed || this.soundFrames !== frames)
            return kernel.destroy();
        this.soundPlayer = new SoundPlayer(kernel, context);
        if (this.document.usesInputs && !this.heard)
            await this.hear("own");
    }

    /**
     * What an episode with Inputs hears. Call it in answer to the visitor's action. Throws if the
     * visitor or the browser refuses it.
     * @param {"nothing" | "own" | "microphone" | File} source
     */
    async hear(source) {
        const hearing = ++this.hearings;
        this.heard?.disconnect();
        this.heard = null;
        this.heardSource = source;
        if (source === "nothing")
            return this.redraw();
        const heard = new HeardSound(this.audioContext());
        if (source === "microphone")
            await heard.useMicrophone();
        else if (source instanceof File)
            await heard.useFile(source);
        else if (this.soundPlayer)
            heard.connect(this.soundPlayer.output);
        // The visitor may permit a microphone after another choice, or after the end.
        if (this.isClosed || hearing !== this.hearings)
            return heard.disconnect();
        this.heard = heard;
        this.redraw();
    }

    /** The channels, or null if the episode has no Inputs. */
    get channels() {
        return this.frames?.inputs?.channels ?? null;
    }

    /** @param {boolean} isHidden browsers draw no frames of a page that is not seen */
    hide(isHidden) {
        this.isHidden = isHidden;
        this.followSound();
        this.redraw();
    }

    followSound() {
        if (!this.soundPlayer)
            return;
        const isHeard = this.volume > 0 && !this.isHidden && this.audio?.state === "running";
        if (this.isPlaying && isHeard)
            this.soundPlayer.start(this.time, this.values).catch(error => this.fail(error));
        else
            this.soundPlayer.stop();
    }

    /** @param {unknown} error */
    fail(error) {
        if (this.isClosed)
            return;
        this.close();
        this.events.failed(asPageError(error));
    }

    close() {
        if (this.isClosed)
            return;
        this.pause();
        this.isClosed = true;
        cancelAnimationFrame(this.request);
        this.heard?.disconnect();
        this.closeSound();
        if (this.audio)
            this.audio.onstatechange = null;
        this.audio?.close();
        this.audio = null;
        this.frames?.destroy();
        this.device?.destroy();
    }
}

function lost() {
    return new PageError("lost", "The graphics device was lost. Reload the page to try again.");
}

/** @param {GPUError} error that the device reports later than the call */
function refused(error) {
    return new PageError(
        "refused",
        error instanceof GPUOutOfMemoryError
            ? "The graphics device has too little memory for the episode."
            : `The graphics device refuses the episode: ${error.message}`
    );
}

/** @param {unknown} error */
function asPageError(error) {
    if (error instanceof PageError)
        return error;
    // WebGPU ends what waits for a device that was lost, before it reports the loss.
    if (error instanceof DOMException && ["AbortError", "OperationError"].includes(error.name))
        return lost();
    return new PageError("refused", `The episode cannot be drawn: ${error}`);
}
