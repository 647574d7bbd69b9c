// The toolkit's dialog for choosing a font, with a colour.
#pragma once

#include "platform/font_dialogs.h"
#include "platform/texts.h"

namespace tessavox {

class QtFontDialogs : public FontDialogs {
public:
    explicit QtFontDialogs(const Texts& texts)
        : m_texts(texts)
    {
    }
    void ShowFont(FontChoice& choice) override;

private:
    const Texts& m_texts;
};

} // namespace tessavox
