// The connection to the server, which comes back by itself, and what a page asks through it.

const RETRY_MS = 1000;

export class Link {
    #socket = null;
    #listeners = new Map();
    #questions = new Map();
    #number = 0;

    // listener(message) is called for each message of that kind; "link" tells of the connection
    // itself: {up: boolean}.
    on(kind, listener) {
        if (!this.#listeners.has(kind)) this.#listeners.set(kind, []);
        this.#listeners.get(kind).push(listener);
    }

    open() {
        const address = new URL("socket", location.href);
        address.protocol = "ws:";
        this.#socket = new WebSocket(address);
        this.#socket.onopen = () => this.#tell({kind: "link", up: true});
        this.#socket.onmessage = (event) => this.#take(JSON.parse(event.data));
        this.#socket.onclose = () => {
            this.#tell({kind: "link", up: false});
            for (const answer of this.#questions.values()) {
                answer({error: {why: "the panel's server is gone"}});
            }
            this.#questions.clear();
            setTimeout(() => this.open(), RETRY_MS);
        };
    }

    // Resolves to the answer: {result} or {error: {why, what?, remedy?}}.
    ask(request) {
        if (this.#socket?.readyState !== WebSocket.OPEN) {
            return Promise.resolve({error: {why: "the panel's server is gone"}});
        }
        return new Promise((resolve) => {
            const number = ++this.#number;
            this.#questions.set(number, resolve);
            this.#socket.send(JSON.stringify({number, ...request}));
        });
    }

    #take(message) {
        if (message.kind !== "answer") return this.#tell(message);
        this.#questions.get(message.number)?.(message);
        this.#questions.delete(message.number);
    }

    #tell(message) {
        for (const listener of this.#listeners.get(message.kind) ?? []) listener(message);
    }
}
