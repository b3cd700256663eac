// The script of a gallery's page: plays the episode that the visitor points at, or, on a screen without
// a pointer, the one in the middle. It imports nothing.

const patience = 250; // milliseconds until an episode begins

class Gallery {
    /** @param {HTMLElement[]} tiles links to pages of episodes */
    constructor(tiles) {
        this.tiles = tiles;
        /** @type {HTMLElement | null} */
        this.chosen = null;
        /** @type {HTMLIFrameElement | null} */
        this.frame = null;
        this.timer = 0;
    }

    /** @param {HTMLElement | null} tile null: none is played */
    choose(tile) {
        if (tile === this.chosen)
            return;
        clearTimeout(this.timer);
        this.frame?.remove();
        this.frame = null;
        this.chosen = tile;
        if (tile)
            this.timer = setTimeout(() => this.play(tile), patience);
    }

    /** @param {HTMLElement} tile */
    play(tile) {
        this.frame = document.createElement("iframe");
        this.frame.src = `${tile.getAttribute("href")}#bare`;
        this.frame.tabIndex = -1;
        this.frame.setAttribute("aria-hidden", "true");
        tile.querySelector(".picture")?.append(this.frame);
    }

    followPointer() {
        for (const tile of this.tiles) {
            tile.onpointerenter = tile.onfocus = () => this.choose(tile);
            tile.onpointerleave = tile.onblur = () => this.choose(null);
        }
    }

    followScrolling() {
        /** @param {HTMLElement} tile */
        const distance = tile => {
            const { top, bottom } = tile.getBoundingClientRect();
            return Math.abs(top + bottom - innerHeight);
        };
        const choose = () =>
            this.choose(this.tiles.reduce((best, tile) => (distance(tile) < distance(best) ? tile : best)));
        addEventListener("scroll", choose, { passive: true });
        choose();
    }
}

/** @type {HTMLElement[]} */
const tiles = Array.from(document.querySelectorAll("a.episode"));
if (tiles.length > 0 && navigator.gpu && !matchMedia("(prefers-reduced-motion: reduce)").matches) {
    const gallery = new Gallery(tiles);
    if (matchMedia("(hover: hover)").matches)
        gallery.followPointer();
    else
        gallery.followScrolling();
}
