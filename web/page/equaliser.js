// Ten sliders in decibels and the curve through them, drawn from the gains that were read back.

import {byId, element, svg, text} from "./dom.js";

const BANDS = 10;
const NEUTRAL_GAIN = 4096;
// What the service accepts reaches from 725 to 32767.
const LOWEST_DB = -15;
const HIGHEST_DB = 18;
const STEP_DB = 0.5;

const decibelsOf = (gain) => 20 * Math.log10(gain / NEUTRAL_GAIN);

function written(decibels) {
    const rounded = decibels.toFixed(1).replace(/^-0\.0$/, "0.0");
    return (Number(rounded) > 0 ? "+" : "") + rounded.replace("-", "−");
}

function frequency(hertz) {
    return hertz >= 1000 ? `${hertz / 1000} kHz` : `${hertz} Hz`;
}

export class Equaliser {
    #changes;
    #bands = [];
    #state = {};

    constructor(changes) {
        this.#changes = changes;
        for (let band = 0; band < BANDS; ++band) this.#bands.push(this.#makeBand(band));
        byId("flat").onclick = () => changes.set("gains", Array(BANDS).fill("0dB").join(","));
    }

    #makeBand(band) {
        const slider = element("input", {type: "range", min: LOWEST_DB, max: HIGHEST_DB, step: STEP_DB,
            id: `band${band}`, "aria-describedby": "equaliser-hint"});
        const label = element("label", {for: slider.id}, String(band));
        const value = element("output", {for: slider.id, "aria-hidden": "true"});
        const send = () => this.#changes.set(`gains.${band}`, `${slider.value}dB`);
        // A trial starts with the value that the slider is left at.
        slider.oninput = () => {
            slider.setAttribute("aria-valuetext", `${written(Number(slider.value))} dB`);
            if (byId("trying").value === "0") send();
        };
        slider.onchange = () => { if (byId("trying").value !== "0") send(); };
        byId("bands").append(element("div", {className: "band"}, value, slider, label));
        return {slider, value, label};
    }

    show(state) {
        this.#state = state;
        const on = Boolean(state.geq);
        text("equaliser-hint", !state.effect ? "The effect must be on." :
            !on ? "Off: the sliders show what it would do." : "");
        byId("geq").disabled = !state.effect;
        byId("flat").disabled = !on;
        this.#bands.forEach(({slider, value, label}, band) => {
            const decibels = decibelsOf(state.gains[band]);
            slider.disabled = !on;
            value.textContent = written(decibels);
            if (state.bands) label.textContent = frequency(state.bands[band]);
            slider.setAttribute("aria-label", `Band ${band}` +
                (state.bands ? `, ${frequency(state.bands[band])}` : ""));
            const pending = this.#changes.isPending(`gains.${band}`);
            value.classList.toggle("pending", pending);
            if (pending) return;
            slider.value = decibels;
            slider.setAttribute("aria-valuetext", `${written(decibels)} dB`);
        });
        this.#draw(state.gains.map(decibelsOf), on);
    }

    // Called when a value has settled: nothing that is wanted hides what was read back any more.
    settle() {
        if (this.#state.gains) this.show(this.#state);
    }

    #draw(decibels, on) {
        const curve = byId("curve");
        const y = (value) => HIGHEST_DB - value;
        const x = (band) => band + 0.5;
        curve.setAttribute("viewBox", `0 -1 ${BANDS} ${HIGHEST_DB - LOWEST_DB + 2}`);
        curve.classList.toggle("off", !on);
        curve.setAttribute("aria-label", "Curve of the equaliser, in decibels: " +
            decibels.map(written).join(", "));
        const lines = [-12, -6, 0, 6, 12, 18].map((value) => svg("path", {
            d: `M 0 ${y(value)} H ${BANDS}`, class: value === 0 ? "axis neutral" : "axis"}));
        let path = `M 0 ${y(decibels[0])} H ${x(0)}`;
        for (let band = 1; band < BANDS; ++band) {
            // Level at each band, so that the curve goes no further than the bands do.
            path += ` C ${x(band - 0.5)} ${y(decibels[band - 1])} ${x(band - 0.5)} ` +
                `${y(decibels[band])} ${x(band)} ${y(decibels[band])}`;
        }
        curve.replaceChildren(...lines, svg("path", {d: `${path} H ${BANDS}`, class: "line"}));
    }
}
