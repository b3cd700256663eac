// The controls of what an episode with `Inputs` hears and sees, each by the visitor's permission.
import { fileButton, textButton } from "./Buttons.js";
import { readChannels } from "./Channels.js";
import { element } from "./Elements.js";

/** @typedef {import("./EpisodeDocument.js").EpisodeDocument} EpisodeDocument */
/** @typedef {import("./Player.js").Player} Player */

/**
 * A row for the sound that the episode hears, and one for each channel that it reads.
 * @param {Player} player
 * @param {EpisodeDocument} episode
 * @param {(sentence: string) => void} tell shows a sentence to the visitor
 */
export function inputControls(player, episode, tell) {
    /** @type {(work: Promise<unknown>, sentence: string) => void} */
    const attempt = (work, sentence) => {
        work.then(
            () => tell(""),
            () => tell(sentence)
        ).then(() => player.redraw());
    };
    /** @type {(name: string, ...buttons: HTMLElement[]) => HTMLElement} */
    const row = (name, ...buttons) =>
        element(
            "div",
            { class: "input", role: "group", "aria-label": name },
            element("span", { "aria-hidden": "true" }, name),
            ...buttons
        );
    const channelRow = /** @param {number} channel */ channel =>
        row(
            `Channel ${channel}`,
            fileButton("Picture", "image/*", file =>
                attempt(
                    player.channels?.showPicture(channel, file) ?? Promise.reject(),
                    "The browser cannot show this picture."
                )
            ),
            textButton("Camera", () =>
                attempt(
                    player.channels?.showCamera(channel) ?? Promise.reject(),
                    "The browser does not give the page a camera."
                )
            )
        );
    if (!episode.usesInputs)
        return [];
    const sound = row(
        "Hears",
        textButton("Microphone", () =>
            attempt(player.hear("microphone"), "The browser does not give the page a microphone.")
        ),
        fileButton("File", "audio/*", file =>
            attempt(player.hear(file), "The browser cannot play this file.")
        ),
        textButton("Nothing", () => attempt(player.hear("nothing"), ""))
    );
    return [sound, ...readChannels(episode).map(channelRow)];
}
