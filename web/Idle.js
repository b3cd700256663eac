// Tells when the visitor only looks: the controls leave the picture then.

const idleSeconds = 3;

export class Idle {
    /**
     * @param {HTMLElement} element whose events are actions of the visitor
     * @param {(isIdle: boolean) => void} changed
     */
    constructor(element, changed) {
        this.changed = changed;
        this.timer = 0;
        for (const type of ["pointermove", "pointerdown", "keydown", "focusin"])
            element.addEventListener(type, () => this.restart());
        this.restart();
    }

    restart() {
        this.stop();
        this.changed(false);
        this.timer = setTimeout(() => this.changed(true), 1000 * idleSeconds);
    }

    stop() {
        clearTimeout(this.timer);
    }
}
