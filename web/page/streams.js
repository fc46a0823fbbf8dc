// The log of the service and the journal of the DSP, as their lines come.

import {byId, element} from "./dom.js";

const MOST_LINES = 500;
// Less than a line away from the end, new lines are followed.
const NEAR_END_PX = 16;

// What the panel itself reads would drown what others do.
const isRead = (line) => /^(dsp (read|cache)|audio get) /.test(line);

class Stream {
    #lines;

    constructor(name) {
        this.#lines = byId(name);
        byId(`${name}-clear`).onclick = () => this.#lines.replaceChildren();
    }

    add({lines, anew}) {
        const box = this.#lines;
        const follows = box.scrollHeight - box.scrollTop - box.clientHeight < NEAR_END_PX;
        if (anew) box.replaceChildren();
        box.append(...lines.map((line) => element("div", {
            textContent: line,
            className: isRead(line) ? "read" : /(^dsp (fail|refuse)| E |denied|rror)/.test(line) ? "bad" : "",
        })));
        while (box.childElementCount > MOST_LINES) box.firstElementChild.remove();
        if (follows) box.scrollTop = box.scrollHeight;
    }
}

export class Streams {
    constructor(link) {
        const streams = {log: new Stream("log"), journal: new Stream("journal")};
        link.on("lines", (message) => {
            // Only an emulated phone has a journal.
            if (message.stream === "journal") {
                byId("journal-section").hidden = message.anew && message.lines.length === 0;
            }
            streams[message.stream].add(message);
        });
        byId("reads").onchange =
            () => byId("journal").classList.toggle("reads", byId("reads").checked);
    }
}
