// Switches, choices and numbers: each shows a property as it was read back, and sets it.

import {byId, element, text} from "./dom.js";

const LEVELS = 10;
const LISTENING_VALUES = 4;
const ROUTES = ["speaker", "lineout", "bluetooth"];

export class Settings {
    #changes;
    #state = {};

    constructor(changes) {
        this.#changes = changes;
        for (const key of ["effect", "geq"]) {
            byId(key).onclick = () => changes.set(key, this.#state[key] ? "off" : "on");
        }
        for (const key of ["stereo", "route"]) {
            for (const radio of this.#radios(key)) radio.onchange = () => changes.set(key, radio.value);
        }
        for (const route of ROUTES) this.#number(byId(`tuning.${route}`), `tuning.${route}`);
        this.#makeLevels();
        this.#makeListeningTest();
    }

    show(state) {
        this.#state = state;
        for (const part of document.querySelectorAll("[data-property]")) {
            part.hidden = !(part.dataset.property in state);
        }
        for (const key of ["effect", "geq"]) {
            byId(key).setAttribute("aria-checked", String(Boolean(state[key])));
        }
        for (const key of ["stereo", "route"]) {
            if (this.#changes.isPending(key)) continue;
            for (const radio of this.#radios(key)) radio.checked = radio.value === String(state[key]);
        }
        for (const route of ROUTES) {
            this.#showNumber(byId(`tuning.${route}`), `tuning.${route}`, state.tuning?.[route]);
        }
        this.#levels().forEach((input, i) => this.#showNumber(input, "levels", state.levels?.[i]));
        const values = state["listening-test"];
        text("listening-result", values ? `It holds ${values.join(", ")}.` : "None was taken.");
    }

    #radios(key) {
        return document.querySelectorAll(`input[name="${key}"]`);
    }

    #levels() {
        return [...byId("levels").querySelectorAll("input")];
    }

    // What a person is typing is left alone.
    #showNumber(input, key, value) {
        if (value === undefined || this.#changes.isPending(key)) return;
        if (document.activeElement !== input || !input.dataset.typing) input.value = value;
    }

    #number(input, key, valueOf = () => input.value) {
        input.oninput = () => { input.dataset.typing = "yes"; };
        input.onblur = () => { delete input.dataset.typing; };
        input.onchange = () => {
            delete input.dataset.typing;
            if (input.reportValidity() && input.value !== "") this.#changes.set(key, valueOf());
        };
    }

    #makeLevels() {
        for (let i = 0; i < LEVELS; ++i) {
            const input = element("input", {type: "number", step: "any"});
            this.#number(input, "levels", () => this.#levels().map((one) => one.value).join(","));
            byId("levels").append(element("label", {}, `${i} `, input));
        }
    }

    #makeListeningTest() {
        const form = byId("listening");
        for (let i = 0; i < LISTENING_VALUES; ++i) {
            form.firstElementChild.append(element("label", {}, `${"abcd"[i]} `,
                element("input", {type: "number", step: "any", required: true})));
        }
        form.onsubmit = (event) => {
            event.preventDefault();
            const values = [...form.querySelectorAll("input")].map((input) => input.value);
            this.#changes.set("listening-test", values.join(","));
        };
        byId("listening-reset").onclick =
            () => this.#changes.run("listening-test", ["listening-test", "reset"]);
    }
}
