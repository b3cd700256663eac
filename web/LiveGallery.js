// The page that lists the episodes of a folder, and follows the folder.
import { element } from "./Elements.js";
import { answerOf } from "./LiveEvents.js";
import { LiveStills } from "./LiveStills.js";

/**
 * @typedef {object} LiveEntry
 * @property {string} name
 * @property {string} address of its page, in the site's folders
 * @property {string} title
 * @property {string} teaches one line; may be empty
 * @property {"waiting" | "drawn" | "faulty"} state
 * @property {string} document its digest; empty: none can be drawn yet
 */

/** @typedef {{text: string, row: HTMLLIElement, document: string, canvas: HTMLCanvasElement}} LiveRow */

const stateTexts = { waiting: "waits to be compiled", drawn: "", faulty: "has errors" };

/**
 * @param {string} root
 * @param {LiveEntry} entry
 * @param {HTMLCanvasElement} canvas
 */
function entryRow(root, { name, address, title, teaches, state }, canvas) {
    return element(
        "li",
        { class: state },
        element(
            "a",
            { href: `${root}e/${address}` },
            canvas,
            element("h2", {}, title),
            ...(teaches ? [element("p", {}, teaches)] : []),
            element("p", { class: "file" }, name, ...(stateTexts[state] ? [" ", element("b", {}, stateTexts[state])] : []))
        )
    );
}

export class LiveGallery {
    /** @param {string} root of the site, relative to the page */
    constructor(root) {
        this.root = root;
        this.list = element("ul", { class: "episodes" });
        this.empty = element("p", {}, "The folder has no episodes: no files that end with .metal.");
        this.connection = element("p", { role: "status" });
        this.stills = new LiveStills();
        /** @type {Map<string, LiveRow>} by name */
        this.rows = new Map();
        document.title = "Episodes";
        document.body.classList.add("gallery");
        document.body.append(element("h1", {}, "Episodes"), this.connection, this.empty, this.list);
        this.empty.hidden = true;
    }

    /** Shows the newest list. Rows that stay the same keep their element, and with it the focus. */
    async update() {
        const site = /** @type {{episodes: LiveEntry[]} | null | undefined} */ (
            await answerOf(`${this.root}site.json`)
        );
        if (!site)
            return;
        const rows = new Map();
        for (const entry of site.episodes) {
            const text = JSON.stringify(entry);
            const known = this.rows.get(entry.name);
            rows.set(entry.name, known?.text === text ? known : this.made(entry, text, known));
        }
        this.place([...rows.values()].map(each => each.row));
        this.rows = rows;
        this.empty.hidden = rows.size > 0;
    }

    /**
     * @param {LiveEntry} entry
     * @param {string} text
     * @param {LiveRow} [before]
     * @returns {LiveRow}
     */
    made(entry, text, before) {
        const { document } = entry;
        const canvas =
            before && before.document === document
                ? before.canvas
                : this.stills.canvasOf(`${this.root}d/${entry.address}`, before?.canvas);
        return { text, row: entryRow(this.root, entry, canvas), document, canvas };
    }

    /** @param {HTMLLIElement[]} rows */
    place(rows) {
        const stay = new Set(rows);
        for (const { row } of this.rows.values())
            if (!stay.has(row))
                row.remove();
        rows.forEach((row, index) => {
            if (this.list.children[index] !== row)
                this.list.insertBefore(row, this.list.children[index] ?? null);
        });
    }

    /** @param {boolean} isConnected */
    showConnection(isConnected) {
        this.connection.textContent = isConnected ? "" : "The connection to tarnwick serve is lost.";
    }
}
