// Files that are dropped on the page, or chosen: tunings, tuning data, curves and snapshots.

import {base64Of, byId, element} from "./dom.js";

const BLOCKS = ["speaker", "lineout", "bluetooth"].map((name) => ({
    label: `a tuning, for block ${name}`, words: ["block", "push", name, "-"]}));
const SETTINGS = [
    {label: "a curve of the equaliser", words: ["geq", "load", "-"]},
    {label: "a snapshot of all settings", words: ["restore", "-"]},
];
// Only devices without tuning numbers take these.
const DATA = ["speaker", "second-speaker", "accessory lineout", "accessory bluetooth",
    "stereo-room 1", "stereo-room 2", "multichannel-room"].map((kind) => ({
    label: `tuning data: ${kind}`, words: ["tune", ...kind.split(" "), "-"]}));

export class Files {
    #changes;
    #kinds = [];

    constructor(changes) {
        this.#changes = changes;
        const drop = byId("drop");
        byId("file").onchange = (event) => {
            if (event.target.files.length > 0) this.#send(event.target.files[0]);
            event.target.value = "";
        };
        drop.ondragover = (event) => {
            event.preventDefault();
            drop.classList.add("over");
        };
        drop.ondragleave = () => drop.classList.remove("over");
        drop.ondrop = (event) => {
            event.preventDefault();
            drop.classList.remove("over");
            if (event.dataTransfer.files.length > 0) this.#send(event.dataTransfer.files[0]);
        };
    }

    show(state) {
        byId("data").replaceChildren(...Object.entries(state.data ?? {}).map(([kind, name]) =>
            element("li", {}, element("span", {textContent: kind}), element("code", {textContent: name}))));
        const kinds = [...(state.data ? DATA : []), ...SETTINGS, ...BLOCKS];
        if (kinds.length === this.#kinds.length) return;
        this.#kinds = kinds;
        byId("file-kind").replaceChildren(...kinds.map(
            ({label}, i) => element("option", {value: String(i), textContent: label})));
    }

    // A file that was dropped on a block's own map.
    toBlock(name, file) {
        this.#run(["block", "push", name, "-"], file);
    }

    #send(file) {
        this.#run(this.#kinds[Number(byId("file-kind").value)].words, file);
    }

    async #run(words, file) {
        const bytes = new Uint8Array(await file.arrayBuffer());
        this.#changes.run(`file ${words.join(" ")}`, words, base64Of(bytes));
    }
}
