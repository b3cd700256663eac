// Follows the versions of a server's site, and connects again when the connection is lost.

/** Longer without an event means that the connection is lost, though the system has not noticed. */
const silentSeconds = 25;

const retrySeconds = 1;

export class LiveEvents {
    /**
     * @param {string} address of the stream of events
     * @param {{changed: () => void, connected: (isConnected: boolean) => void}} news `changed` is
     * called after each connection too, because versions may have been missed
     */
    constructor(address, news) {
        this.address = address;
        this.news = news;
        this.timer = 0;
        this.connect();
    }

    connect() {
        this.source = new EventSource(this.address);
        this.source.addEventListener("site", () => {
            this.listen();
            this.news.connected(true);
            this.news.changed();
        });
        this.source.addEventListener("beat", () => this.listen());
        this.source.onerror = () => this.lose();
        this.listen();
    }

    listen() {
        this.after(silentSeconds);
    }

    /** An EventSource does not connect again after an answer with an error, so all is done here. */
    lose() {
        this.source?.close();
        this.news.connected(false);
        this.after(retrySeconds);
    }

    /** @param {number} seconds until the stream is lost, or connected to again */
    after(seconds) {
        clearTimeout(this.timer);
        this.timer = setTimeout(
            () => (this.source?.readyState === EventSource.CLOSED ? this.connect() : this.lose()),
            1000 * seconds
        );
    }
}

/**
 * Calls of work that is not to run twice at a time: a call during the work makes it run once more.
 * @param {() => Promise<void>} work
 */
export function oneAtATime(work) {
    let isRunning = false;
    let isAsked = false;
    return async () => {
        isAsked = true;
        if (isRunning)
            return;
        isRunning = true;
        while (isAsked) {
            isAsked = false;
            await work();
        }
        isRunning = false;
    };
}

/**
 * The object of JSON at an address; null if the server gives none.
 * @param {string} address
 */
export async function answerOf(address) {
    const answer = await fetch(address).catch(() => null);
    return answer?.ok ? answer.json().catch(() => null) : null;
}
