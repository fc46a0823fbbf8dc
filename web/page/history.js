// What was changed and can be taken back: history, presets, the two sides and the trial.

import {byId, element, text} from "./dom.js";

const SECOND_MS = 1000;

function changesIn(words) {
    const written = (value) => value === null ? "?" : Array.isArray(value) ? "…" : String(value);
    return Object.entries(words ?? {}).map(
        ([key, {before, after}]) => `${key} ${written(before)} → ${written(after)}`).join(", ");
}

export class History {
    #link;
    #changes;
    #timer = 0;

    constructor(link, changes) {
        this.#link = link;
        this.#changes = changes;
        byId("undo").onclick = () => changes.run("undo", ["undo"]);
        byId("keep").onclick = () => changes.run("trial", ["keep"]);
        byId("back").onclick = () => changes.run("trial", ["undo"]);
        byId("copy").onclick = async () => changes.show(await link.ask({copy: true}));
        for (const radio of this.#sides()) {
            radio.onchange = async () => {
                changes.show(await link.ask({side: radio.value}));
                this.#showSide(this.side);
            };
        }
        byId("preset-save").onsubmit = (event) => this.#savePreset(event);
        link.on("history", (message) => this.#showHistory(message.entries));
        link.on("presets", (message) => this.#showPresets(message.presets ?? []));
        link.on("trial", (message) => this.#showTrial(message));
        link.on("sides", (message) => this.#showSide(message.side));
    }

    #sides() {
        return document.querySelectorAll('input[name="side"]');
    }

    #showSide(side) {
        this.side = side;
        for (const radio of this.#sides()) radio.checked = radio.value === side;
        text("copy", `Copy to ${side === "A" ? "B" : "A"}`);
    }

    #showHistory(entries) {
        byId("undo").disabled = !entries.some((entry) => entry.state === "done");
        byId("history").replaceChildren(...entries.map((entry) => element("li", {className: entry.state},
            element("time", {dateTime: entry.time, textContent: new Date(entry.time).toLocaleTimeString()}),
            element("code", {textContent: entry.command}),
            element("span", {textContent: changesIn(entry.changes)}),
            element("em", {textContent: entry.state === "done" ? "" : entry.state}))));
    }

    #showPresets(presets) {
        byId("presets").replaceChildren(...presets.map(({name}) => element("li", {},
            element("span", {textContent: name}),
            element("button", {type: "button", textContent: "Load", "aria-label": `Load ${name}`,
                onclick: () => this.#loadPreset(name)}),
            element("button", {type: "button", textContent: "Remove", "aria-label": `Remove ${name}`,
                onclick: () => this.#changes.run(`preset ${name}`, ["preset", "remove", name])}))));
    }

    #loadPreset(name) {
        const words = ["preset", "load", name];
        const seconds = byId("trying").value;
        this.#changes.run("preset", seconds === "0" ? words : ["try", seconds, ...words]);
    }

    #savePreset(event) {
        event.preventDefault();
        const name = event.target.elements.name.value;
        this.#changes.run(`preset ${name}`, ["preset", "save", name]);
        event.target.reset();
    }

    // While something is on trial nothing else can be changed.
    #showTrial(message) {
        const running = message.trial === "running";
        clearInterval(this.#timer);
        byId("trial").hidden = !running;
        for (const part of document.querySelectorAll(".plain, #sides")) part.disabled = running;
        if (!running) return;
        text("trial-what", changesIn(message.changes));
        const end = Date.now() + message.left * SECOND_MS;
        const count = () => text("trial-time",
            `— goes back in ${Math.max(0, Math.ceil((end - Date.now()) / SECOND_MS))} s`);
        count();
        this.#timer = setInterval(count, SECOND_MS / 4);
        byId("keep").focus();
    }
}
