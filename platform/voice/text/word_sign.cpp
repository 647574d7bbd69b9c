#include "platform/voice/text/word_sign.h"

#include "platform/voice/text/reading_character.h"

namespace tessavox::voice {

Sign wide_sign(char16_t c)
{
    switch (c) {
    case 0x2010:
    case 0x2011:
        return Sign::hyphen;
    case 0x2019:
        return Sign::apostrophe;
    case 0x2030:
        return Sign::percent;
    case 0x20AC:
        return Sign::currency;
    default:
        break;
    }
    if (is_white(c))
        return Sign::white;
    const bool mark = (c >= 0x2012 && c <= 0x2027) || c == 0x2039 || c == 0x203A;
    return mark ? Sign::mark : Sign::complex;
}

} // namespace tessavox::voice
