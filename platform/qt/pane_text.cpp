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

} // namespace tessavox
