// The start of a page that `tarnwick serve` shows.
import { LiveEpisode } from "./LiveEpisode.js";
import { LiveEvents, oneAtATime } from "./LiveEvents.js";
import { LiveGallery } from "./LiveGallery.js";

const { root = "./", episode: liveAddress = "" } = document.body.dataset;
const livePage = liveAddress ? new LiveEpisode(root, liveAddress) : new LiveGallery(root);
new LiveEvents(`${root}events`, {
    changed: oneAtATime(() => livePage.update()),
    connected: isConnected =>
        livePage instanceof LiveEpisode
            ? livePage.notes.showConnection(isConnected)
            : livePage.showConnection(isConnected)
});
