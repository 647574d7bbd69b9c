// The desktop's dialog for choosing a font.
#pragma once

#include <cstdint>
#include <string>

namespace tessavox {

/// What a font dialog begins with, and what was chosen in it. The names are those of the well-known
/// common dialog.
struct FontChoice {
    int Flags
        = 0; // 1 screen fonts, 2 printer fonts, 256 effects: strike-through, underline, colour
    std::string FontName;
    double FontSize = 0; // points
    bool FontBold = false;
    bool FontItalic = false;
    bool FontUnderline = false;
    bool FontStrikethru = false;
    std::int32_t Color = 0; // as RGB() makes it
};

class FontDialogs {
public:
    virtual ~FontDialogs() = default;
    /// Blocks until the user chooses or cancels; what is cancelled stays as it was.
    virtual void ShowFont(FontChoice& choice) = 0;
};

} // namespace tessavox
