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
        document.addEventListener("visibilitychange", () => (document.hidden ? this.rest() : this.connect()));
        this.connect();
    }

    connect() {
        this.source?.close();
        this.source = new EventSource(this.address);
        this.source.addEventListener("site", () => {
            this.listen();
            this.news.connected(true);
            this.news.changed();
            if (document.hidden)
                this.rest();
        });
        this.source.addEventListener("beat", () => this.listen());
        this.source.onerror = () => this.lose();
        this.listen();
    }

    listen() {
        this.after(silentSeconds);
    }

    /** A browser has six connections to a server for all its pages, so a hidden page keeps none. */
    rest() {
        clearTimeout(this.timer);
        this.source?.close();
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
        try {
            while (isAsked) {
                isAsked = false;
                await work();
            }
        } finally {
            isRunning = false;
        }
    };
}

/**
 * The object of JSON at an address; null if the server has none there, undefined if it does not
 * answer: then the page asks again after the next connection.
 * @param {string} address
 */
export async function answerOf(address) {
    const answer = await fetch(address).catch(() => undefined);
    return answer?.status === 404 ? null : answer?.ok ? answer.json().catch(() => undefined) : undefined;
}
