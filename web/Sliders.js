// The sliders of an episode's parameters.
import { iconButton } from "./Buttons.js";
import { element } from "./Elements.js";

/** @typedef {import("./EpisodeDocument.js").Param} Param */
/** @typedef {import("./Player.js").Player} Player */

/**
 * A number of single precision with at most three decimals.
 * @param {number} value
 */
export function numberText(value) {
    return String(Number(value.toFixed(3)));
}

export class Sliders {
    /**
     * @param {Player} player
     * @param {Param[]} params
     */
    constructor(player, params) {
        this.player = player;
        this.sliders = params.map((param, index) => this.slider(param, index));
        this.rows = this.sliders.map(each => each.row);
    }

    /**
     * @param {Param} param
     * @param {number} index
     */
    slider(param, index) {
        const input = element("input", {
            type: "range",
            min: String(param.min),
            max: String(param.max),
            step: "any",
            id: `slider-${index}`,
            "aria-describedby": `detail-${index}`
        });
        input.oninput = () => this.choose(index, Number(input.value));
        // The slider tells its value, which keys change in each frame.
        const value = element("span", { class: "value", "aria-hidden": "true" });
        const reset = iconButton("reset", `Reset ${param.name}`, () => this.choose(index, undefined));
        const row = element(
            "div",
            { class: "slider" },
            element("label", { for: input.id }, param.name),
            value,
            reset,
            input,
            element("small", { id: `detail-${index}` }, param.detail)
        );
        return { row, input, value, reset };
    }

    /**
     * @param {number} index
     * @param {number | undefined} value
     */
    choose(index, value) {
        this.player.choose(index, value);
        this.show();
    }

    /** Shows the values of the player. */
    show() {
        const { values, time } = this.player;
        this.sliders.forEach(({ input, value, reset }, index) => {
            const current = values.valueOf(index, time);
            input.value = String(current);
            input.setAttribute("aria-valuetext", numberText(current));
            value.textContent = numberText(current);
            reset.disabled = !values.isChosen(index);
        });
    }
}
