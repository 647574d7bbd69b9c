// Copies the formats of letters from one selection to another, by two clicks into the text.
#pragma once

#include <cstdint>
#include <string>

namespace tessavox {

struct Process;

/// What is copied, for the whole program. A truth value is -1 if true.
struct FormatCopy {
    std::int16_t FormatCopyState = 0; // 0 idle, 1 armed, 2 formats held, 3 done
    std::int16_t FormatCopyBold = 0;
    std::int16_t FormatCopyItalic = 0;
    std::int16_t FormatCopyUnderline = 0;
    std::int16_t FormatCopyStrike = 0;
    std::int16_t FormatCopySize = 0; // points
    std::string FormatCopyFont;
    std::string FormatCopyColor; // decimal
};

/// The left mouse button was released over a text. Complete but idle: no command arms it. One that
/// does sets FormatCopyState to 1; then the next click takes the formats, and the one after it
/// gives them.
void FormatCopyStep(Process& process);

} // namespace tessavox
