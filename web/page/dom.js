// Short forms for what every part of the page does with its elements.

export const byId = (id) => document.getElementById(id);

export function text(id, words) {
    if (byId(id).textContent !== words) byId(id).textContent = words;
}

// An element with properties, or attributes where their names have a dash or are "role" or "for".
export function element(name, properties = {}, ...children) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(properties)) {
        if (key.includes("-") || key === "role" || key === "for") made.setAttribute(key, value);
        else made[key] = value;
    }
    made.append(...children);
    return made;
}

export function svg(name, attributes) {
    const made = document.createElementNS("http://www.w3.org/2000/svg", name);
    for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
    return made;
}

export const bytesOf = (base64) => Uint8Array.from(atob(base64), (c) => c.charCodeAt(0));

export function base64Of(bytes) {
    let characters = "";
    for (const byte of bytes) characters += String.fromCharCode(byte);
    return btoa(characters);
}
