// The embedded voice: espeak-ng behind the engine interface.
#include "platform/failure.h"
#include "platform/voice/engines/espeak_library.h"
#include "platform/voice/engines/espeak_marks.h"
#include "platform/voice/engines/espeak_text.h"
#include "platform/voice/engines/espeak_voice_list.h"
#include "platform/voice/engines/phone_tables.h"
#include "platform/voice/engines/prosody.h"
#include "platform/voice/engines/time_stretch.h"
#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/engines/word_timing.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <optional>

namespace tessavox::voice {

namespace {

// An emphasised word is louder too. The library limits by itself, so nothing clips.
constexpr int normal_volume = 100;
constexpr int emphasis_volume = 120;

// The library tells phonemes by name only; the number is made of the first two letters.
std::int16_t number_of(const std::string& mnemonic)
{
    const auto letter = [&](std::size_t at) {
        return at < mnemonic.size() ? static_cast<unsigned char>(mnemonic[at]) & 0x7F : 0;
    };
    return static_cast<std::int16_t>(letter(0) | letter(1) << 7);
}

// The phones with their durations. Language switches and modifiers make no sound of their own, and
// a pause told in several parts is one.
std::vector<PhoneMark> phone_marks(const EspeakSound& sound, bool emphasis)
{
    std::vector<PhoneMark> marks;
    const std::uint64_t end = sound.samples.size();
    for (const EspeakSound::Phone& phone : sound.phones) {
        const bool pause = phone.mnemonic.starts_with('_');
        const std::uint8_t viseme = viseme_of_espeak(phone.mnemonic);
        if (!pause && viseme == 0)
            continue;
        if (pause && !marks.empty() && marks.back().viseme == 0)
            continue;
        const std::uint64_t frame
            = std::clamp(phone.frame, marks.empty() ? 0 : marks.back().frame, end);
        marks.push_back({ frame, 0, pause ? std::int16_t{ 0 } : number_of(phone.mnemonic), viseme,
            static_cast<std::uint8_t>(emphasis && !pause ? 2 : 0) });
    }
    for (std::size_t at = 0; at < marks.size(); ++at)
        marks[at].frames = (at + 1 < marks.size() ? marks[at + 1].frame : end) - marks[at].frame;
    std::erase_if(marks, [](const PhoneMark& mark) { return mark.frames == 0; });
    return marks;
}

// Signs are read as words instead: their names in the dictionaries, such as that of an umbrella in
// Hindi, are longer than the library's buffer for the name of a character.
bool has_spelling(char32_t character)
{
    const auto point = static_cast<UChar32>(character);
    return character < 0x80 || u_isalnum(point) || u_ispunct(point);
}

// One utterance on its way through the library.
class Speaking {
public:
    Speaking(EspeakLibrary& library, const Utterance& utterance, const EspeakSound& sound)
        : m_library(library)
        , m_utterance(utterance)
        , m_sound(sound)
    {
    }

    void speak_phonemes(const std::string& mnemonics)
    {
        m_library.say_phonemes(mnemonics, m_utterance.ends_sentence);
    }

    void speak(const std::vector<EspeakPiece>& pieces)
    {
        for (const EspeakPiece& piece : pieces) {
            const bool last = &piece == &pieces.back();
            if (const auto* words = std::get_if<SpokenText>(&piece))
                speak_words(*words, last && m_utterance.ends_sentence);
            else
                speak_names(std::get<NamedPiece>(piece));
        }
    }

    std::vector<HeardToken> take_heard() { return std::move(m_heard); }

private:
    void speak_words(const SpokenText& piece, bool pause_after)
    {
        const EspeakReports reports{ m_sound, m_sound.words.size(), m_sound.phones.size() };
        m_library.say(piece.utf8, pause_after);
        const auto phones_of = [this](std::uint32_t token) {
            return count_phones(m_library.phonemes_of(safe_utf8(token_text(m_utterance, token))));
        };
        for (const HeardToken& heard : heard_tokens(piece, reports, phones_of))
            if (heard.token < m_utterance.tokens.size())
                m_heard.push_back(heard);
    }

    void speak_names(const NamedPiece& piece)
    {
        m_heard.push_back({ piece.token, m_sound.samples.size() });
        for (const char32_t character : piece.characters) {
            SpokenText text;
            text.append(character, piece.token);
            if (has_spelling(character))
                m_library.say_name_of(character);
            else
                m_library.say(text.utf8, false);
        }
    }

    EspeakLibrary& m_library;
    const Utterance& m_utterance;
    const EspeakSound& m_sound;
    std::vector<HeardToken> m_heard;
};

EspeakSettings settings_of(const RenderRequest& request)
{
    const SpeechStyle& style = request.utterance->style;
    const EspeakPitch pitch = espeak_pitch(style.pitch, style.emphasis);
    return { request.voice_id.substr(espeak_id_prefix.size()),
        espeak_speed(request.rate, style.emphasis).words_per_minute, pitch.pitch, pitch.range,
        style.emphasis ? emphasis_volume : normal_volume };
}

// The phonemes that replace the text. Markup's symbols are those of English, so a voice of another
// language speaks the text instead, and so does every voice if a symbol is unknown.
std::optional<std::string> replacing_phonemes(const Utterance& utterance, bool english)
{
    if (utterance.pronunciation.empty() || !english)
        return std::nullopt;
    return espeak_phonemes_of_sapi(utterance.pronunciation);
}

class EspeakEngine : public Engine {
public:
    std::vector<SpeechObjectToken> voices() override
    {
        EspeakLibrary library;
        if (!library.available())
            return {};
        return espeak_tokens(library.voices(), languages_of_user());
    }

    Rendering render(const RenderRequest& request, const std::atomic<bool>& cancelled) override
    {
        if (!request.voice_id.starts_with(espeak_id_prefix))
            throw Failure("no espeak-ng voice: " + request.voice_id);
        const Utterance& utterance = *request.utterance;
        // Every English voice file of the library is called "gmw/en...".
        const bool english = request.voice_id.starts_with("espeak:gmw/en");
        const auto phonemes = replacing_phonemes(utterance, english);

        EspeakSound sound;
        EspeakText text;
        std::vector<HeardToken> heard;
        {
            EspeakLibrary library;
            library.begin(settings_of(request), sound, cancelled);
            Speaking speaking(library, utterance, sound);
            if (phonemes) {
                speaking.speak_phonemes(*phonemes);
            } else {
                text = espeak_text(utterance, english, [&](const std::string& sign) {
                    return count_phones(library.phonemes_of(sign)) == 0;
                });
                speaking.speak(text.pieces);
            }
            heard = speaking.take_heard();
        }
        Rendering rendering;
        rendering.sample_rate = sound.sample_rate;
        rendering.phones = phone_marks(sound, utterance.style.emphasis);
        rendering.words
            = complete_marks(utterance.tokens, heard, rendering.phones, sound.samples.size());
        rendering.samples = std::move(sound.samples);
        for (WordMark& word : rendering.words)
            word.silent = word.token < text.silent.size() && text.silent[word.token];
        stretch(rendering, espeak_speed(request.rate, utterance.style.emphasis).stretch, 1);
        return rendering;
    }
};

} // namespace

std::unique_ptr<Engine> make_espeak_engine()
{
    return std::make_unique<EspeakEngine>();
}

} // namespace tessavox::voice
