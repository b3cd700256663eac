// The controls over the picture of an episode: a bar, and a panel with sliders and inputs.
import { iconButton, setIcon } from "./Buttons.js";
import { element } from "./Elements.js";
import { inputControls } from "./InputControls.js";
import { Sliders } from "./Sliders.js";

/** @typedef {import("./EpisodeDocument.js").EpisodeDocument} EpisodeDocument */
/** @typedef {import("./Player.js").Player} Player */

/** @param {number} seconds */
export function clockText(seconds) {
    const whole = Math.floor(seconds);
    return `${Math.floor(whole / 60)}:${String(whole % 60).padStart(2, "0")}`;
}

const seekSeconds = 5;

export class Controls {
    /**
     * @param {Player} player
     * @param {EpisodeDocument} episode
     * @param {{toggleFullScreen: () => void, saveSnapshot: () => void, tell: (sentence: string) => void}} actions
     */
    constructor(player, episode, actions) {
        this.player = player;
        this.episode = episode;
        this.actions = actions;
        this.sliders = new Sliders(player, episode.params);
        this.panel = element(
            "div",
            { class: "panel", id: "panel", role: "group", "aria-label": "Sliders" },
            ...this.sliders.rows,
            ...inputControls(player, episode, actions.tell)
        );
        this.panel.hidden = true;
        this.playButton = iconButton("play", "Play", () => this.togglePlay());
        this.soundButton = iconButton("silent", "Sound on", () => this.toggleSound());
        this.soundButton.hidden = !episode.hasSound;
        this.panelButton = iconButton("sliders", "Sliders", () => this.togglePanel());
        this.panelButton.setAttribute("aria-controls", "panel");
        this.panelButton.hidden = this.panel.childElementCount === 0;
        this.time = element("input", {
            type: "range",
            min: "0",
            max: String(episode.length),
            step: "any",
            "aria-label": "Time"
        });
        this.time.oninput = () => player.seek(Number(this.time.value));
        // The slider tells the time. An <output> would be read aloud each second.
        this.timeText = element("span", { class: "time", "aria-hidden": "true" });
        this.screenButton = iconButton("whole", "Full screen", actions.toggleFullScreen);
        this.screenButton.hidden = !document.fullscreenEnabled;
        this.bar = element(
            "div",
            { class: "bar", role: "group", "aria-label": "Playing" },
            this.playButton,
            this.time,
            this.timeText,
            this.soundButton,
            this.panelButton,
            iconButton("save", "Save picture", actions.saveSnapshot),
            this.screenButton
        );
        this.show();
    }

    togglePlay() {
        if (this.player.isPlaying)
            this.player.pause();
        else
            this.player.play();
        this.show();
    }

    toggleSound() {
        this.player.setVolume(this.player.volume > 0 ? 0 : 1);
        this.show();
    }

    togglePanel() {
        this.panel.hidden = !this.panel.hidden;
        this.show();
    }

    /** Shows the state of the player. */
    show() {
        const { player, episode } = this;
        setIcon(this.playButton, ...(player.isPlaying ? pauseIcon : playIcon));
        setIcon(this.soundButton, ...(player.volume > 0 ? loudIcon : silentIcon));
        this.panelButton.setAttribute("aria-expanded", String(!this.panel.hidden));
        this.time.value = String(player.time);
        this.timeText.textContent = clockText(player.time);
        this.time.setAttribute("aria-valuetext", `${clockText(player.time)} of ${clockText(episode.length)}`);
        if (!this.panel.hidden)
            this.sliders.show();
    }

    /**
     * A key of the keyboard, unless a control takes it for itself.
     * @param {KeyboardEvent} event
     */
    key(event) {
        if (event.ctrlKey || event.altKey || event.metaKey)
            return;
        const target = event.composedPath()[0];
        const isControl = target instanceof HTMLInputElement || target instanceof HTMLButtonElement;
        const actions = /** @type {Record<string, () => void>} */ ({
            " ": () => this.togglePlay(),
            k: () => this.togglePlay(),
            f: this.actions.toggleFullScreen,
            s: this.actions.saveSnapshot,
            m: () => this.episode.hasSound && this.toggleSound(),
            p: () => this.panelButton.hidden || this.togglePanel(),
            Escape: () => this.panel.hidden || this.togglePanel(),
            ArrowLeft: () => this.player.seek(this.player.time - seekSeconds),
            ArrowRight: () => this.player.seek(this.player.time + seekSeconds)
        });
        const takesIt = isControl && (event.key === " " || event.key.startsWith("Arrow"));
        if (takesIt || !Object.keys(actions).includes(event.key))
            return;
        event.preventDefault();
        if (!event.repeat || event.key.startsWith("Arrow"))
            actions[event.key]();
    }
}

/** @typedef {[drawing: import("./Icons.js").IconName, name: string]} IconAndName */

/** @type {IconAndName} */
const playIcon = ["play", "Play"];
/** @type {IconAndName} */
const pauseIcon = ["pause", "Pause"];
/** @type {IconAndName} */
const loudIcon = ["loud", "Sound off"];
/** @type {IconAndName} */
const silentIcon = ["silent", "Sound on"];
