// The blocks of the DSP as maps, a point for each word of 32 bits, with marks on the words that
// changed last and on those that are not as they should be.

import {byId, bytesOf, element} from "./dom.js";

const NAMES = ["speaker", "lineout", "bluetooth"];
const COLUMNS = 128;
const WORD = 4;
// Points on either side of a word that its mark covers: one word alone could not be seen.
const MARK = 1;

function changedWords(before, after) {
    const words = [];
    if (before?.length !== after.length) return words;
    for (let at = 0; at < after.length; ++at) {
        if (before[at] !== after[at] && words.at(-1) !== Math.floor(at / WORD)) {
            words.push(Math.floor(at / WORD));
        }
    }
    return words;
}

const wordsOf = ({offset, size}) => Array.from(
    {length: Math.ceil(size / WORD)}, (_, i) => Math.floor(offset / WORD) + i);

class Block {
    #bytes = null;
    #changed = [];
    #verdict = null;
    #canvas = element("canvas", {role: "img"});
    #summary = element("figcaption");
    #list = element("ul", {className: "differences"});

    constructor(name, upload) {
        this.name = name;
        this.figure = element("figure", {id: `block-${name}`},
            element("h3", {textContent: name}), this.#canvas, this.#summary, this.#list);
        this.figure.ondragover = (event) => event.preventDefault();
        this.figure.ondrop = (event) => {
            event.preventDefault();
            if (event.dataTransfer.files.length > 0) upload(name, event.dataTransfer.files[0]);
        };
        this.#draw();
    }

    showBytes(bytes) {
        const changed = changedWords(this.#bytes, bytes);
        if (changed.length > 0) this.#changed = changed;
        this.#bytes = bytes;
        this.#draw();
    }

    showVerdict(verdict) {
        this.#verdict = verdict;
        this.#draw();
    }

    draw() {
        this.#draw();
    }

    #outcome() {
        if (this.#verdict === null) return "not yet read";
        if (this.#verdict.error) return `cannot be checked: ${this.#verdict.error.why}`;
        const count = this.#verdict.differences.length;
        if (count === 0) return "as it should be";
        return `${count} difference${count > 1 ? "s" : ""} from ${this.#verdict.file}`;
    }

    #draw() {
        const differences = this.#verdict?.differences ?? [];
        this.figure.dataset.verdict = this.#verdict === null ? "unknown" :
            this.#verdict.error || differences.length > 0 ? "wrong" : "right";
        this.figure.dataset.changed = String(this.#changed.length);
        this.#summary.textContent = this.#outcome() +
            (this.#verdict?.forced ? "; forced mode seems to be on" : "");
        this.#canvas.setAttribute("aria-label", `Map of block ${this.name}: ${this.#outcome()}`);
        this.#list.replaceChildren(...differences.map((one) => element("li", {
            textContent: `${one.name} at ${one.offset}: ${one.expected} expected, ${one.found} found`})));
        if (this.#bytes !== null) this.#paint(differences);
    }

    #paint(differences) {
        const words = Math.ceil(this.#bytes.length / WORD);
        this.#canvas.width = COLUMNS;
        this.#canvas.height = Math.ceil(words / COLUMNS);
        const context = this.#canvas.getContext("2d");
        const view = new DataView(this.#bytes.buffer);
        context.fillStyle = getComputedStyle(this.#canvas).color;
        for (let word = 0; word < Math.floor(this.#bytes.length / WORD); ++word) {
            // The larger the stronger; any value shows beside zero.
            const value = view.getUint32(word * WORD, true);
            context.globalAlpha = value === 0 ? 0 : 0.2 + 0.6 * value / 2 ** 32;
            context.fillRect(word % COLUMNS, Math.floor(word / COLUMNS), 1, 1);
        }
        context.globalAlpha = 1;
        this.#mark(context, "changed", this.#changed);
        this.#mark(context, "wrong", differences.flatMap(wordsOf));
    }

    // In the colour of the legend.
    #mark(context, kind, words) {
        context.fillStyle = getComputedStyle(document.querySelector(`.key.${kind}`)).backgroundColor;
        for (const word of words) {
            context.fillRect(word % COLUMNS - MARK, Math.floor(word / COLUMNS) - MARK,
                2 * MARK + 1, 2 * MARK + 1);
        }
    }
}

export class Blocks {
    constructor(link, changes, upload) {
        const blocks = new Map(NAMES.map((name) => [name, new Block(name, upload)]));
        byId("blocks").append(...[...blocks.values()].map((block) => block.figure));
        for (const [name, block] of blocks) {
            link.on(`block ${name}`, (message) => block.showBytes(bytesOf(message.bytes)));
        }
        link.on("verdicts", (message) => {
            for (const verdict of message.blocks) blocks.get(verdict.block)?.showVerdict(verdict);
        });
        byId("check").onclick = () => link.ask({check: true});
        byId("reload").onclick = () => changes.run("reload", ["reload"]);
        // The colours of the map are those of the page.
        matchMedia("(prefers-color-scheme: dark)").onchange =
            () => blocks.forEach((block) => block.draw());
    }
}
