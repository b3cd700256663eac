// What an episode with `Inputs` hears: its own sound, a file, or the microphone.
import { SoundAnalysis, analysisWindow } from "./SoundAnalysis.js";

/** @typedef {{levels: Float32Array, spectrum: Float32Array}} Heard */

export class HeardSound {
    /** @param {AudioContext} context */
    constructor(context) {
        this.context = context;
        this.analyser = context.createAnalyser(); // used for its last samples only
        this.analyser.fftSize = analysisWindow;
        this.samples = new Float32Array(analysisWindow);
        this.analysis = new SoundAnalysis(context.sampleRate);
        /** @type {AudioNode | null} */
        this.source = null;
        /** @type {MediaStream | null} */
        this.stream = null;
        /** @type {AudioBufferSourceNode | null} */
        this.file = null;
        this.last = context.currentTime;
    }

    /** @param {AudioNode} source */
    connect(source) {
        this.disconnect();
        this.source = source;
        source.connect(this.analyser);
    }

    /** Hears nothing; the microphone is switched off. */
    disconnect() {
        this.source?.disconnect(this.analyser);
        this.source = null;
        this.file?.stop();
        this.file = null;
        this.stream?.getTracks().forEach(track => track.stop());
        this.stream = null;
    }

    /** Asks the visitor for the microphone. Throws if it is refused. */
    async useMicrophone() {
        const stream = await navigator.mediaDevices.getUserMedia({
            audio: { echoCancellation: false, noiseSuppression: false, autoGainControl: false }
        });
        this.connect(this.context.createMediaStreamSource(stream));
        this.stream = stream;
    }

    /**
     * Plays the file, which repeats, and hears it. Throws if the browser does not read it.
     * @param {File} file
     */
    async useFile(file) {
        const buffer = await this.context.decodeAudioData(await file.arrayBuffer());
        const source = this.context.createBufferSource();
        source.buffer = buffer;
        source.loop = true;
        source.connect(this.context.destination);
        source.start();
        this.connect(source);
        this.file = source;
    }

    /**
     * The levels and the spectrum now.
     * @returns {Heard}
     */
    now() {
        const elapsed = Math.max(0, this.context.currentTime - this.last);
        this.last = this.context.currentTime;
        this.analyser.getFloatTimeDomainData(this.samples);
        this.analysis.analyse(this.samples, elapsed);
        return { levels: this.analysis.bands, spectrum: this.analysis.spectrum };
    }
}
