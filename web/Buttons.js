// Buttons that show an icon. Their name is read by screen readers, and shown beside the pointer.
import { element } from "./Elements.js";
import { icon } from "./Icons.js";

/** @typedef {import("./Icons.js").IconName} IconName */

/**
 * @param {HTMLElement} button
 * @param {IconName} drawing
 * @param {string} name
 */
export function setIcon(button, drawing, name) {
    if (button.getAttribute("aria-label") === name)
        return;
    button.setAttribute("aria-label", name);
    button.title = name;
    button.replaceChildren(icon(drawing));
}

/**
 * @param {IconName} drawing
 * @param {string} name
 * @param {() => void} action
 */
export function iconButton(drawing, name, action) {
    const made = element("button", { type: "button", class: "icon" });
    setIcon(made, drawing, name);
    made.onclick = action;
    return made;
}

/**
 * @param {string} name
 * @param {() => void} action
 */
export function textButton(name, action) {
    const made = element("button", { type: "button" }, name);
    made.onclick = action;
    return made;
}

/**
 * A button that opens a dialog for a file.
 * @param {string} name
 * @param {string} accept
 * @param {(file: File) => void} take
 */
export function fileButton(name, accept, take) {
    const input = element("input", { type: "file", accept, "aria-label": name });
    input.onchange = () => {
        const file = input.files?.[0];
        input.value = ""; // the same file may be chosen again
        if (file)
            take(file);
    };
    return element("label", { class: "button" }, element("span", { "aria-hidden": "true" }, name), input);
}
