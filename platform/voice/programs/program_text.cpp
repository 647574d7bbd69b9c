#include "platform/voice/programs/program_text.h"

#include "platform/text.h"
#include "platform/voice/engines/ascii_text.h"
#include "platform/voice/engines/espeak_text.h"

#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace tessavox::voice {

namespace {

// A letter that stands by itself may be a word, a capital is none; the commas part them.
SpokenText spelled_out(const NamedPiece& piece)
{
    SpokenText text;
    for (const char32_t character : piece.characters) {
        text.append(static_cast<char32_t>(u_toupper(static_cast<UChar32>(character))), piece.token);
        text.append(", ", piece.token);
    }
    return text;
}

SpokenText spoken_text(const Utterance& utterance, const VoiceDescription& voice)
{
    const bool by_name = utterance.style.spell || utterance.style.speak_punctuation;
    if (voice.encoding == "ASCII" || (by_name && is_english(voice)))
        return ascii_text(utterance);
    SpokenText text;
    const auto never = [](const std::string&) { return false; };
    for (const EspeakPiece& piece : espeak_text(utterance, is_english(voice), never).pieces)
        if (const auto* words = std::get_if<SpokenText>(&piece))
            text.append(*words);
        else
            text.append(spelled_out(std::get<NamedPiece>(piece)));
    return text;
}

// A blank for a character that the encoding hasn't.
std::string encoded(const std::string& utf8, UConverter* converter)
{
    std::string result;
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString text = icu::UnicodeString::fromUTF8(utf8);
    result.resize(UCNV_GET_MAX_BYTES_FOR_STRING(static_cast<std::size_t>(text.length()), 1));
    const int length = ucnv_fromUChars(converter, result.data(), static_cast<int>(result.size()),
        text.getBuffer(), text.length(), &status);
    result.resize(static_cast<std::size_t>(std::max(length, 0)));
    return result;
}

std::string in_encoding(std::string line, const std::string& encoding)
{
    if (encoding == "UTF-8" || encoding == "ASCII")
        return line;
    UErrorCode status = U_ZERO_ERROR;
    UConverter* converter = ucnv_open(encoding.c_str(), &status);
    ucnv_setSubstChars(converter, " ", 1, &status);
    line = encoded(line, converter);
    ucnv_close(converter);
    return line;
}

} // namespace

bool is_english(const VoiceDescription& voice)
{
    return lower_ascii(voice.language.substr(0, voice.language.find('-'))) == "en";
}

ProgramText program_text(const Utterance& utterance, const VoiceDescription& voice)
{
    const SpokenText spoken = spoken_text(utterance, voice);
    ProgramText text;
    std::size_t character = 0;
    for (const char byte : spoken.utf8) {
        const bool starts_character = (byte & 0xC0) != 0x80;
        character += starts_character ? 1 : 0;
        const bool blank = static_cast<unsigned char>(byte) <= ' ' || byte == '\x7F';
        // Two of these begin phonemes.
        if (byte == '[' && text.line.ends_with('['))
            text.line += ' ';
        const bool parted = text.line.empty() || text.line.back() == ' ';
        if (blank && parted)
            continue;
        if (!blank && parted)
            text.tokens.push_back(spoken.tokens[character - 1]);
        text.line += blank ? ' ' : byte;
    }
    if (text.line.ends_with(' '))
        text.line.pop_back();
    text.line = in_encoding(std::move(text.line), voice.encoding);
    return text;
}

} // namespace tessavox::voice
