// The one primitive under every walk over a text: where is the next '<' or '>'?
//
// It steps by characters, so a markup byte that follows too soon after a multi-byte lead byte is
// part of that character and is not seen. All walks share this, so they all see the same markup.
#pragma once

namespace velda::xmlp {

// The first '<' or '>' at or after `position`; `end` when there is none before it.
const char *findMarkup(const char *position, const char *end);

// The byte after a markup byte; NUL at the end of the text.
inline char byteAfter(const char *markup, const char *end) {
    return markup + 1 < end ? markup[1] : '\0';
}

} // namespace velda::xmlp
