// Notes over the picture: what the compiler has found, and whether the server answers. They are in the
// top layer, so that they are also over a picture that fills the screen.
import { element } from "./Elements.js";

/**
 * A finding of the compiler.
 * @typedef {object} LiveFinding
 * @property {string} severity
 * @property {string} place   "rose.metal:12:5"
 * @property {string} message
 * @property {string} excerpt the line, and a caret below it; may be empty
 * @property {string} hint    may be empty
 */

/** @typedef {HTMLElement & {showPopover(): void, hidePopover(): void}} Popover */

/** @param {LiveFinding} finding */
function findingRow({ severity, place, message, excerpt, hint }) {
    return element(
        "li",
        { class: severity },
        element("p", {}, element("b", {}, place), ` ${severity}: ${message}`),
        ...(excerpt ? [element("pre", {}, excerpt)] : []),
        ...(hint ? [element("p", { class: "hint" }, hint)] : [])
    );
}

export class LiveNotes {
    constructor() {
        this.sentence = element("p", { class: "sentence" });
        this.findings = element("ul", { hidden: "" });
        this.connection = element("p", { class: "connection" });
        this.box = /** @type {Popover} */ (
            element("aside", { class: "notes", role: "status", popover: "manual" })
        );
        this.isRaised = false;
        this.box.append(this.sentence, this.findings, this.connection);
        document.body.append(this.box);
        // What fills the screen later lies over what was in the top layer before.
        document.addEventListener("fullscreenchange", () => this.raise());
    }

    /**
     * @param {string} sentence may be empty
     * @param {LiveFinding[]} findings may be there without a sentence: warnings
     */
    show(sentence, findings = []) {
        this.sentence.textContent = sentence;
        this.findings.replaceChildren(...findings.map(findingRow));
        this.findings.hidden = findings.length === 0;
        this.raise();
    }

    /** @param {boolean} isConnected */
    showConnection(isConnected) {
        this.connection.textContent = isConnected
            ? ""
            : "The connection to tarnwick serve is lost. The page connects again when it answers.";
        this.raise();
    }

    get isEmpty() {
        return !this.sentence.textContent && this.findings.hidden && !this.connection.textContent;
    }

    raise() {
        if (this.isRaised)
            this.box.hidePopover();
        this.isRaised = !this.isEmpty;
        if (this.isRaised)
            this.box.showPopover();
    }
}
