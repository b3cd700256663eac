// The page of an episode that is being written: it draws the newest version that compiles, without
// loading the page again, and shows the errors of a newer one over it.
import { EpisodeElement } from "./EpisodeElement.js";
import { answerOf } from "./LiveEvents.js";
import { LiveNotes } from "./LiveNotes.js";
import { PageError } from "./PageError.js";

/**
 * The newest state of an episode; docs/live.md describes its members.
 * @typedef {object} LiveState
 * @property {string} name
 * @property {string} title
 * @property {"waiting" | "drawn" | "faulty"} state
 * @property {string} document its digest; empty: none can be drawn yet
 * @property {string} failure
 * @property {import("./LiveNotes.js").LiveFinding[]} findings
 */

export class LiveEpisode {
    /**
     * @param {string} root    of the site, relative to the page
     * @param {string} address of the episode in the site's folders
     */
    constructor(root, address) {
        this.root = root;
        this.address = address;
        this.notes = new LiveNotes();
        this.document = "";
        /** @type {EpisodeElement | null} */
        this.episode = null;
    }

    /** Shows the newest state. */
    async update() {
        const state = /** @type {LiveState | null | undefined} */ (
            await answerOf(`${this.root}s/${this.address}`)
        );
        if (state === undefined)
            return;
        if (state === null)
            return this.notes.show("The episode is not in the folder.");
        document.title = state.title;
        let refusal = "";
        if (state.document && state.document !== this.document) {
            this.document = state.document;
            refusal = await this.draw();
        }
        const sentences = { waiting: "The episode is being compiled.", drawn: refusal, faulty: state.failure };
        this.notes.show(sentences[state.state], state.findings);
    }

    /** Draws the newest document. Returns the sentence of an error after which the last one remains. */
    async draw() {
        try {
            if (this.episode)
                await this.episode.replace();
            else
                this.open();
            return "";
        } catch (error) {
            return error instanceof PageError ? error.message : String(error);
        }
    }

    open() {
        this.episode = new EpisodeElement();
        this.episode.setAttribute("src", `${this.root}d/${this.address}`);
        this.episode.setAttribute("whole", "");
        document.body.prepend(this.episode);
    }
}
