// The page: what the server tells goes to the parts that show it.

import {Blocks} from "./blocks.js";
import {Changes} from "./changes.js";
import {byId, text} from "./dom.js";
import {Equaliser} from "./equaliser.js";
import {Files} from "./files.js";
import {History} from "./history.js";
import {Link} from "./link.js";
import {Settings} from "./settings.js";
import {Streams} from "./streams.js";

const PHONE = {
    "up": (state) => `The phone is there${state.generation ? `: ${state.generation}` : ""}.`,
    "gone": (_, why) => `The phone is gone: ${why}. It is tried again and again.`,
    "no service": () => "The service is not running on the phone. It is waited for.",
    "refuses": (_, why) => `The phone cannot be read: ${why}.`,
};

const link = new Link();
let state = {};
let phone = {};
const changes = new Changes(link, () => show());
const settings = new Settings(changes);
const equaliser = new Equaliser(changes);
const files = new Files(changes);
new History(link, changes);
new Blocks(link, changes, (name, file) => files.toBlock(name, file));
new Streams(link);

function show() {
    if (state.gains === undefined) return;
    settings.show(state);
    equaliser.show(state);
    files.show(state);
}

function showPhone(name, words) {
    byId("phone").dataset.state = name;
    text("phone", words);
    // What is shown is what was read last: it is not to be turned while nobody can read it.
    for (const part of document.querySelectorAll("main section:not([aria-labelledby=log-title])")) {
        part.classList.toggle("stale", name !== "up");
    }
}

link.on("state", (message) => {
    state = message.state;
    show();
    if (phone.state === "up") showPhone("up", PHONE.up(state));
});
link.on("phone", (message) => {
    phone = message;
    showPhone(phone.state, PHONE[phone.state](state, phone.why));
});
link.on("link", ({up}) => {
    if (!up) showPhone("no server", "The panel's server is gone. It is waited for.");
});
link.open();
