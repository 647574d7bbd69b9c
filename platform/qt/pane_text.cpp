#include "platform/qt/pane_text.h"

namespace tessavox {

std::u16string fit_for_pane(std::u16string text)
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char16_t unit = text[i];
        if (unit == u'\r') {
            if (i + 1 < text.size() && text[i + 1] == u'\n')
                continue;
            unit = u'\n';
        } else if (unit == u'\0' || unit == 0xFDD0 || unit == 0xFDD1 || unit == 0xFFFC) {
            unit = 0xFFFD;
        }
        text[kept++] = unit;
    }
    text.resize(kept);
    return text;
}

bool has_endless_word(std::u16string_view text)
{
    constexpr std::size_t longest_word = 20'000; // takes some 50 ms
    constexpr char16_t first_ideograph = 0x2E80; // between which lines break anywhere
    std::size_t run = 0;
    for (const char16_t unit : text) {
        const bool breaks = unit <= u' ' || unit == u'-' || unit >= first_ideograph
            || unit == 0x2028 || unit == 0x2029;
        run = breaks ? 0 : run + 1;
        if (run > longest_word)
            return true;
    }
    return false;
}

} // namespace tessavox
