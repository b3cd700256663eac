// <tarnwick-episode src="rose-window.json"></tarnwick-episode>: an episode in any page.
//
// Attributes: `src`, the address of the episode's document, or `of`, the id of an element of the page
// with its text; `paused`: it does not play by itself; `bare`: no controls; `whole`: it is the page, so
// that it shows the title and all keys are its own. What the element contains is shown until the first
// frame, and where the episode cannot be drawn. The element sets `drawn`, `failed` and `idle`. Another
// `src` plays another episode.
import { Controls } from "./Controls.js";
import { element } from "./Elements.js";
import { parseDocument } from "./EpisodeDocument.js";
import { Idle } from "./Idle.js";
import { PageError } from "./PageError.js";
import { Player } from "./Player.js";
import { style } from "./Style.js";

/** @typedef {import("./EpisodeDocument.js").EpisodeDocument} EpisodeDocument */

/** Pictures of this size are saved. */
const snapshotSize = { width: 1920, height: 1080 };

/** @param {string} query */
const prefers = query => matchMedia(`(${query})`).matches;

export class EpisodeElement extends HTMLElement {
    static get observedAttributes() {
        return ["src"];
    }

    constructor() {
        super();
        const shadow = this.attachShadow({ mode: "open" });
        const sheet = new CSSStyleSheet();
        sheet.replaceSync(style);
        shadow.adoptedStyleSheets = [sheet];
        this.message = element("p", { class: "message", role: "status" });
        this.over = element("div", { class: "over" }, this.message);
        shadow.append(element("slot"), this.over);
        /** @type {Player | null} */
        this.player = null;
        /** @type {Controls | null} */
        this.controls = null;
        /** @type {Idle | null} */
        this.idle = null;
        this.run = 0;
        // The page's tests and its own scripts may wait for the first frame, or for the error.
        /** @type {Promise<void>} */
        this.ready = Promise.resolve();
        this.isInView = true;
        this.followPage = () => this.player?.hide(document.hidden || !this.isInView);
        // Browsers draw the frames of what is scrolled away too.
        this.view = new IntersectionObserver(entries => {
            this.isInView = entries[entries.length - 1].isIntersecting;
            this.followPage();
        });
    }

    connectedCallback() {
        // A page in a frame of another page may be asked for without controls.
        if (this.hasAttribute("whole") && location.hash === "#bare")
            this.toggleAttribute("bare", true);
        document.addEventListener("visibilitychange", this.followPage);
        this.view.observe(this);
        this.restart();
    }

    disconnectedCallback() {
        document.removeEventListener("visibilitychange", this.followPage);
        this.view.disconnect();
        this.stop();
    }

    /** An attribute that the element is made with is not a change. */
    attributeChangedCallback() {
        if (this.run > 0 && this.isConnected)
            this.restart();
    }

    restart() {
        this.stop();
        this.ready = this.start(this.run);
        this.ready.catch(() => {});
    }

    /** Shows what the element contains again. */
    stop() {
        ++this.run;
        this.player?.close();
        this.player?.canvas.remove();
        this.player = null;
        this.controls = null;
        this.hideControls();
        this.tell("");
        this.toggleAttribute("drawn", false);
        this.toggleAttribute("failed", false);
    }

    /** @param {number} run */
    async start(run) {
        try {
            const episode = parseDocument(await this.text());
            if (run === this.run)
                await this.open(episode, run);
        } catch (error) {
            if (run === this.run)
                this.fail(error);
            throw error;
        }
    }

    async text() {
        const id = this.getAttribute("of");
        if (id !== null) {
            const text = document.getElementById(id)?.textContent;
            if (!text)
                throw new PageError("document", "The page does not contain the episode.");
            return text;
        }
        const answer = await fetch(this.getAttribute("src") ?? "").catch(() => null);
        if (!answer?.ok)
            throw new PageError("document", "The episode could not be loaded.");
        return answer.text();
    }

    /**
     * Plays the episode, and waits for its first frame.
     * @param {EpisodeDocument} episode
     * @param {number} run
     */
    async open(episode, run) {
        const canvas = element("canvas", { role: "img", "aria-label": episode.title, tabindex: "0" });
        this.shadowRoot?.prepend(canvas);
        /** @type {() => void} */
        let drawn = () => {};
        const first = new Promise(resolve => (drawn = () => resolve(undefined)));
        const player = await Player.make(episode, canvas, {
            drawn: () => {
                this.toggleAttribute("drawn", true);
                this.controls?.show();
                drawn();
            },
            failed: error => {
                if (this.player === player)
                    this.fail(error);
                drawn();
            }
        }).catch(error => {
            canvas.remove();
            throw error;
        });
        if (run !== this.run) {
            canvas.remove();
            return player.close();
        }
        const before = this.player;
        this.player = player;
        if (before)
            player.follow(before);
        this.addControls(player, episode);
        this.idle?.restart();
        this.follow(player, canvas);
        this.followPage();
        if (!before || this.hasAttribute("failed"))
            this.begin(player, episode);
        await first;
        if (before) {
            before.close();
            before.canvas.remove();
        }
    }

    /**
     * Loads the document again, and plays it from the same time on, with what the visitor chose. The
     * picture of the version before is shown until it is replaced. Throws PageError if the new
     * version cannot be drawn; the one before then goes on.
     */
    async replace() {
        await this.ready.catch(() => {});
        const { run, player } = this;
        const episode = parseDocument(await this.text());
        if (run !== this.run)
            return;
        if (player && (await player.replace(episode))) {
            player.canvas.setAttribute("aria-label", episode.title);
            this.addControls(player, episode);
        } else await this.open(episode, run);
        this.toggleAttribute("failed", false);
        this.tell("");
    }

    /** @param {string} sentence for the visitor */
    tell(sentence) {
        this.message.textContent = sentence;
    }

    /**
     * @param {Player} player
     * @param {EpisodeDocument} episode
     */
    addControls(player, episode) {
        const wasOpen = !this.isUncovered;
        this.controls = new Controls(player, episode, {
            toggleFullScreen: () => this.toggleFullScreen(),
            saveSnapshot: () => this.saveSnapshot(player, episode),
            tell: sentence => this.tell(sentence)
        });
        if (this.hasAttribute("bare"))
            return;
        this.keyboard.onkeydown = /** @param {KeyboardEvent} event */ event => this.controls?.key(event);
        const foot = element("div", { class: "foot" }, this.controls.bar);
        if (this.hasAttribute("whole"))
            foot.prepend(
                element("h1", {}, episode.title),
                ...(episode.teaches ? [element("p", { class: "teaches" }, episode.teaches)] : [])
            );
        this.over.replaceChildren(this.message, this.controls.panel, foot);
        if (wasOpen)
            this.controls.togglePanel();
        this.idle ??= new Idle(this, isIdle =>
            this.toggleAttribute("idle", isIdle && this.player?.isPlaying && this.isUncovered)
        );
    }

    hideControls() {
        this.idle?.stop();
        this.keyboard.onkeydown = null;
        this.over.replaceChildren(this.message);
    }

    /**
     * What gets the keys that control the player.
     * @returns {Document | EpisodeElement}
     */
    get keyboard() {
        return this.hasAttribute("whole") ? document : this;
    }

    /** Whether the controls may leave the picture. */
    get isUncovered() {
        return this.controls?.panel.hidden !== false;
    }

    /**
     * A visitor who asked the system for less motion sees the still.
     * @param {Player} player
     * @param {EpisodeDocument} episode
     */
    begin(player, episode) {
        if (prefers("prefers-reduced-motion: reduce"))
            player.seek(episode.still);
        else if (!this.hasAttribute("paused"))
            player.play();
        player.redraw();
        this.controls?.show();
    }

    /**
     * @param {Player} player
     * @param {HTMLCanvasElement} canvas
     */
    follow(player, canvas) {
        new ResizeObserver(() => player.redraw()).observe(canvas);
        canvas.onpointermove = ({ offsetX, offsetY }) => {
            const ratio = canvas.width / canvas.clientWidth;
            player.mouse = [offsetX * ratio, (canvas.clientHeight - offsetY) * ratio];
        };
        canvas.onpointerleave = () => (player.mouse = null);
    }

    /**
     * The pixels of the still at a time: rows from the top, red, green, blue, alpha.
     * @param {number} time seconds
     * @param {number} width
     * @param {number} height
     */
    async still(time, width, height) {
        await this.ready;
        if (!this.player)
            throw new PageError("refused", "The episode is not drawn.");
        return this.player.still(time, { width, height });
    }

    toggleFullScreen() {
        if (document.fullscreenElement)
            document.exitFullscreen();
        else if (document.fullscreenEnabled)
            this.requestFullscreen().catch(() => {});
    }

    /**
     * @param {Player} player
     * @param {EpisodeDocument} episode
     */
    async saveSnapshot(player, episode) {
        const pixels = await player.still(player.time, snapshotSize);
        const canvas = element("canvas");
        Object.assign(canvas, snapshotSize);
        canvas
            .getContext("2d")
            ?.putImageData(new ImageData(pixels, snapshotSize.width, snapshotSize.height), 0, 0);
        canvas.toBlob(blob => {
            if (!blob)
                return;
            const link = element("a", { href: URL.createObjectURL(blob), download: `${episode.title}.png` });
            link.click();
            setTimeout(() => URL.revokeObjectURL(link.href), 60000);
        });
    }

    /** @param {unknown} error */
    fail(error) {
        const sentence =
            error instanceof PageError ? error.message : `The episode cannot be drawn: ${error}`;
        const movies = this.querySelectorAll("video");
        const other =
            movies.length > 0
                ? " The page shows a recording instead."
                : this.querySelector("img")
                  ? " The page shows a picture instead."
                  : "";
        this.hideControls();
        this.tell(sentence + other);
        this.toggleAttribute("drawn", false);
        this.toggleAttribute("failed", true);
        for (const movie of movies)
            if (prefers("prefers-reduced-motion: reduce"))
                movie.controls = true;
            else
                movie.play().catch(() => {});
    }
}

// A page may load the script of two folders.
if (!customElements.get("tarnwick-episode"))
    customElements.define("tarnwick-episode", EpisodeElement);
