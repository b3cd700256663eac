// The style of the element, in its shadow tree. The controls lie over the picture, so that they change
// neither its size nor its steps.
export const style = `
:host { display: block; position: relative; width: 100%; aspect-ratio: 16 / 9; overflow: hidden;
    container-type: inline-size; color-scheme: dark; background: #0b0b0c; color: #f2efe9;
    font: 15px/1.4 system-ui, sans-serif; }
:host([hidden]), [hidden] { display: none !important; }
canvas { position: absolute; inset: 0; width: 100%; height: 100%; display: block; object-fit: cover;
    touch-action: pan-y pinch-zoom; outline-offset: -3px; }
:host([whole]) canvas { touch-action: none; }
::slotted(*) { position: absolute; inset: 0; width: 100%; height: 100%; object-fit: cover; }
:host([drawn]) slot, :host([failed]) canvas { display: none; }
:host([idle]) canvas { cursor: none; }

.over { position: absolute; inset: 0; display: flex; flex-direction: column; justify-content: flex-end;
    pointer-events: none; }
.over > * { pointer-events: auto; }
.foot { padding: 3em 1em max(0.6em, env(safe-area-inset-bottom)); pointer-events: none;
    background: linear-gradient(transparent, rgb(0 0 0 / 0.75)); transition: opacity 0.3s; }
.foot > * { pointer-events: auto; }
:host([idle]) .foot { opacity: 0; }
:host([bare]) .foot, :host([failed]) .foot { display: none; }
h1 { margin: 0 0.2em; font-size: 1.35em; font-weight: 600; line-height: 1.25; }
.teaches { margin: 0 0.25em 0.5em; color: #cfcac0; }
h1, .teaches { text-shadow: 0 1px 4px #000; overflow-wrap: anywhere; display: -webkit-box;
    -webkit-box-orient: vertical; -webkit-line-clamp: 2; overflow: hidden; }
.message { margin: 0 1em 1em; padding: 0.7em 1em; align-self: flex-start; max-width: 40em;
    border-radius: 10px; background: rgb(20 20 22 / 0.9); overflow-wrap: anywhere; max-height: 50%;
    overflow: auto; box-sizing: border-box; }
.message:empty { display: none; }

.bar { display: flex; align-items: center; gap: 0.25em; }
.bar > input { flex: 1 1 4em; min-width: 0; }
.time { min-width: 2.8em; text-align: right; margin: 0 0.4em; font-variant-numeric: tabular-nums; }

.panel { align-self: flex-end; box-sizing: border-box; width: min(23em, calc(100% - 2em)); min-height: 0;
    margin: 1em 1em -2em; padding: 0.8em 1em; overflow: auto; border-radius: 14px;
    background: rgb(20 20 22 / 0.78); backdrop-filter: blur(14px); z-index: 1; }
.slider { display: grid; grid-template-columns: 1fr auto auto; align-items: center; padding: 0.2em 0; }
.slider label { font-weight: 600; overflow-wrap: anywhere; }
.slider .value { font-variant-numeric: tabular-nums; padding: 0 0.4em; }
.slider input, .slider small { grid-column: 1 / -1; width: 100%; margin: 0; }
.slider small { color: #b9b4aa; overflow-wrap: anywhere; }
.slider small:empty { display: none; }
.slider + .slider, .input { margin-top: 0.5em; padding-top: 0.5em; border-top: 1px solid rgb(255 255 255 / 0.12); }
.input { display: flex; flex-wrap: wrap; align-items: center; gap: 0.4em; }
.input > span { flex: 1 1 100%; font-weight: 600; }

input[type=range] { min-height: 1.9em; accent-color: #e0a050; cursor: pointer; }
button, .button { font: inherit; color: inherit; background: rgb(255 255 255 / 0.1); border: 0;
    border-radius: 8px; padding: 0.45em 0.9em; cursor: pointer; }
.button { position: relative; overflow: hidden; }
.button input { position: absolute; inset: 0; opacity: 0; cursor: pointer; }
.icon { flex: none; display: grid; place-items: center; width: 2.7em; height: 2.7em; padding: 0;
    background: none; border-radius: 50%; }
.slider .icon { width: 2em; height: 2em; }
.icon:disabled { visibility: hidden; }
svg { width: 1.5em; height: 1.5em; fill: none; stroke: currentColor; stroke-width: 1.8;
    stroke-linecap: round; stroke-linejoin: round; }
.slider svg { width: 1.15em; height: 1.15em; }
button:hover, .button:hover, [aria-expanded=true] { background: rgb(255 255 255 / 0.2); }
:focus-visible, .button:focus-within { outline: 3px solid #e0a050; outline-offset: 2px; }

@media (pointer: coarse) { .icon { width: 3em; height: 3em; } input[type=range] { min-height: 2.6em; } }
@media (prefers-reduced-motion: reduce) { .foot { transition: none; } }
@container (max-width: 34em) {
    .foot { padding: 3em 0.4em max(0.4em, env(safe-area-inset-bottom)); }
    h1 { padding: 0 0.3em; }
    .teaches { padding: 0 0.4em; }
    .panel:not([hidden]) ~ .foot :is(h1, .teaches) { display: none; }
    .bar { flex-wrap: wrap; justify-content: flex-end; }
    .bar > input { order: -2; flex: 1 1 calc(100% - 5em); margin: 0 0 0 0.6em; }
    .bar > .time { order: -1; }
    .bar > button:first-child { margin-right: auto; }
    .panel { align-self: stretch; width: auto; max-height: 48%; margin: 0.5em 0.5em -2em; padding: 0.5em 0.9em; }
}
`;
