// What the page changes: one change at a time, and of each thing only the last value that was wanted.

import {byId, text} from "./dom.js";

export class Changes {
    #link;
    #wanted = new Map();  // by what they change: {words, data}
    #busy = null;         // what is being changed
    #settled;

    // settled() is called whenever something was changed, or could not be.
    constructor(link, settled) {
        this.#link = link;
        this.#settled = settled;
    }

    // Whether a value of that thing is under way, so that what was read back is not yet the last word.
    isPending(what) {
        return this.#busy === what || this.#wanted.has(what);
    }

    // Sets a property as kwoctl's `set` does, or tries it, where the page is told to.
    set(key, value) {
        const seconds = byId("trying").value;
        const words = ["set", `${key}=${value}`];
        this.run(key, seconds === "0" ? words : ["try", seconds, ...words]);
    }

    run(what, words, data) {
        this.#wanted.set(what, {words, data});
        document.body.ariaBusy = "true";
        if (this.#busy === null) this.#next();
    }

    async #next() {
        for (const [what, request] of this.#wanted) {
            this.#wanted.delete(what);
            this.#busy = what;
            this.show(await this.#link.ask(request));
            this.#busy = null;
            this.#settled(what);
        }
        document.body.ariaBusy = "false";
    }

    // Says what went wrong, if anything did, and what was not done as it was asked for.
    show({error, warnings = [], result}) {
        const lines = [...(error ? [error] : []), ...warnings].map(({what, why, remedy}) =>
            `${what ? `${what}: ` : ""}${why}${remedy ? `. Remedy: ${remedy}` : ""}`);
        text("message", [...lines, ...(result?.lost ?? [])].join("; "));
    }
}
