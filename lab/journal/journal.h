// The one journal of the emulated phone, /run/journal: what the DSP, the audio daemon and the
// conversion library were asked, one line an event, in the order in which it happened.

#ifndef ZYL_LAB_JOURNAL_JOURNAL_H
#define ZYL_LAB_JOURNAL_JOURNAL_H

// Appends one line; `format` brings no line end, and line ends within become spaces. Whoever
// answers a request journals it before the answer leaves, so the order holds across processes. A
// journal that cannot be written changes nothing for the caller. Any thread.
void journal(const char* format, ...) __attribute__((format(printf, 1, 2)));

#endif  // ZYL_LAB_JOURNAL_JOURNAL_H
