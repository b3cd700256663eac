// The icons of buttons: drawings of 24 by 24 units, with lines of the colour of the text.

const namespace = "http://www.w3.org/2000/svg";

/** The paths of each icon. */
const drawings = {
    play: ["M7 4l13 8-13 8z"],
    pause: ["M8 5v14", "M16 5v14"],
    loud: ["M4 9.5h3.5L12 5v14l-4.5-4.5H4z", "M15.5 9a4.5 4.5 0 0 1 0 6", "M18 6.5a8 8 0 0 1 0 11"],
    silent: ["M4 9.5h3.5L12 5v14l-4.5-4.5H4z", "M16 9.5l5 5", "M21 9.5l-5 5"],
    sliders: ["M4 7h9", "M17 7h3", "M4 17h3", "M11 17h9", "M13 7a2 2 0 1 0 4 0a2 2 0 1 0-4 0", "M7 17a2 2 0 1 0 4 0a2 2 0 1 0-4 0"],
    save: ["M12 4v11", "M7.5 11l4.5 4 4.5-4", "M5 20h14"],
    whole: ["M4 9V4h5", "M15 4h5v5", "M20 15v5h-5", "M9 20H4v-5"],
    reset: ["M5 12a7 7 0 1 0 2.5-5.4", "M5 4v4.5h4.5"]
};

/** @typedef {keyof typeof drawings} IconName */

/** @param {IconName} name */
export function icon(name) {
    const made = document.createElementNS(namespace, "svg");
    made.setAttribute("viewBox", "0 0 24 24");
    made.setAttribute("aria-hidden", "true");
    for (const drawing of drawings[name]) {
        const path = document.createElementNS(namespace, "path");
        path.setAttribute("d", drawing);
        made.append(path);
    }
    return made;
}
