#include "platform/voice/programs/program_engine.h"

#include "platform/failure.h"
#include "platform/text.h"
#include "platform/voice/alignment/aligner.h"
#include "platform/voice/engines/espeak_library.h"
#include "platform/voice/engines/espeak_reference.h"
#include "platform/voice/engines/espeak_voice_list.h"
#include "platform/voice/engines/language_ids.h"
#include "platform/voice/engines/prosody.h"
#include "platform/voice/engines/time_stretch.h"
#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/engines/word_timing.h"
#include "platform/voice/programs/kept_speech.h"
#include "platform/voice/programs/program_text.h"
#include "platform/voice/programs/sound_answer.h"

#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace tessavox::voice {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int attempts_at_an_utterance = 2;
constexpr int failures_before_a_rest = 3;
constexpr auto rest_time = std::chrono::minutes(1);

// Silence is what is this far below the loudest sample: 50 dB.
constexpr int silence_divisor = 300;
constexpr double kept_silence_seconds = 0.02;
constexpr double sentence_pause_seconds = 0.3;

// No voice is so much slower or faster than its reference.
constexpr double most_times_as_long = 5;

// A pause of known length in place of the silence that an engine adds.
void trim(Rendering& rendering, bool ends_sentence)
{
    const auto& samples = rendering.samples;
    int loudest = 0;
    for (const std::int16_t sample : samples)
        loudest = std::max(loudest, std::abs(static_cast<int>(sample)));
    const auto sounds = [least = loudest / silence_divisor](std::int16_t sample) {
        return std::abs(static_cast<int>(sample)) > least;
    };
    const auto kept = static_cast<std::ptrdiff_t>(kept_silence_seconds * rendering.sample_rate);
    const auto first = std::ranges::find_if(samples, sounds) - samples.begin();
    const auto last = samples.rend() - std::find_if(samples.rbegin(), samples.rend(), sounds);
    const auto begin = std::max<std::ptrdiff_t>(first - kept, 0);
    const auto end = std::max(begin, std::min<std::ptrdiff_t>(last + kept, std::ssize(samples)));
    const double pause = ends_sentence ? sentence_pause_seconds : 0;
    rendering.samples.erase(rendering.samples.begin() + end, rendering.samples.end());
    rendering.samples.erase(rendering.samples.begin(), rendering.samples.begin() + begin);
    rendering.samples.resize(
        rendering.samples.size() + static_cast<std::size_t>(pause * rendering.sample_rate));
    move_marks(rendering, [&](std::uint64_t frame) {
        return std::min(frame - std::min(frame, static_cast<std::uint64_t>(begin)),
            static_cast<std::uint64_t>(rendering.samples.size()));
    });
    std::erase_if(rendering.phones, [](const PhoneMark& phone) { return phone.frames == 0; });
}

std::vector<PhoneMark> phones_of(const AlignedMarks& marks, const Rendering& reference)
{
    std::vector<PhoneMark> phones;
    for (const AlignedPhone& aligned : marks.phones) {
        PhoneMark phone;
        if (aligned.phone != AlignedPhone::pause)
            phone = reference.phones[static_cast<std::size_t>(aligned.phone)];
        phone.frame = aligned.frame;
        phone.frames = aligned.frames;
        phones.push_back(phone);
    }
    return phones;
}

// The words that the program has told the times of itself.
std::vector<HeardToken> heard_words(const EngineSound& sound, const ProgramText& text)
{
    std::vector<HeardToken> heard;
    if (sound.words.size() == text.tokens.size())
        for (std::size_t word = 0; word < sound.words.size(); ++word)
            if (sound.words[word])
                heard.push_back({ text.tokens[word], *sound.words[word] });
    return heard;
}

std::string description_of(const VoiceDescription& voice)
{
    UErrorCode status = U_ZERO_ERROR;
    std::array<char, ULOC_FULLNAME_CAPACITY> locale{};
    uloc_forLanguageTag(
        voice.language.c_str(), locale.data(), static_cast<int>(locale.size()), nullptr, &status);
    std::array<char16_t, 200> name{};
    const int length = uloc_getDisplayName(
        locale.data(), "en", name.data(), static_cast<int>(name.size()), &status);
    const bool named = U_SUCCESS(status) && length > 0;
    std::string text = named
        ? to_utf8(std::u16string(name.data(), static_cast<std::size_t>(length)))
        : voice.language;
    if (!voice.gender.empty())
        text += ", " + lower_ascii(voice.gender);
    return text + ", " + voice.name + (voice.vendor.empty() ? "" : " (" + voice.vendor + ")");
}

SpeechObjectToken token_of(const NaturalVoice& voice)
{
    SpeechObjectToken token;
    token.id = voice.id;
    token.description = description_of(voice.description);
    token.name = voice.description.name;
    token.gender = voice.description.gender;
    token.age = voice.description.age;
    token.language = language_ids_of(voice.description.language);
    token.vendor = voice.description.vendor;
    return token;
}

class ProgramEngine : public Engine {
public:
    ProgramEngine(const VoicePlaces& places, EngineKeeper& keeper)
        : m_keeper(keeper)
        , m_reference(make_espeak_engine())
    {
        for (NaturalVoice& voice : find_natural_voices(places.folders, places.programs).voices)
            m_voices.emplace_back().found = std::move(voice);
    }

    std::vector<SpeechObjectToken> voices() override
    {
        std::vector<SpeechObjectToken> tokens;
        std::map<std::string, int> seen;
        for (const Voice& voice : m_voices) {
            tokens.push_back(token_of(voice.found));
            std::string& description = tokens.back().description;
            if (const int count = ++seen[description]; count > 1)
                description += " " + std::to_string(count);
        }
        return tokens;
    }

    Rendering render(const RenderRequest& request, const std::atomic<bool>& cancelled) override
    {
        const auto voice = std::ranges::find_if(
            m_voices, [&](const Voice& one) { return one.found.id == request.voice_id; });
        if (voice == m_voices.end())
            throw Failure("no natural voice: " + request.voice_id);
        const SpeechStyle& style = request.utterance->style;
        // What it is in its natural speed.
        Utterance plain = *request.utterance;
        plain.pronunciation.clear();
        plain.style.rate = plain.style.pitch = plain.style.voice = 0;
        plain.style.emphasis = false;
        std::optional<Rendering> rendering = m_kept.find(request.voice_id, plain);
        if (!rendering) {
            rendering = speak(*voice, plain, cancelled);
            if (!rendering)
                return m_reference->render(
                    { voice->reference, request.rate, request.utterance }, cancelled);
            m_kept.keep(request.voice_id, plain, *rendering);
        }
        stretch(*rendering,
            speed_factor(request.rate) * (style.emphasis ? emphasis_speed_factor : 1),
            pitch_factor(style.pitch) * (style.emphasis ? emphasis_pitch_factor : 1));
        return std::move(*rendering);
    }

private:
    struct Voice {
        NaturalVoice found;
        std::string reference; // empty until it is needed
        Aligner aligner;
        int failures = 0; // in a row
        Clock::time_point rests_until;
    };

    // Nothing if the reference voice has to read it.
    std::optional<Rendering> speak(
        Voice& voice, const Utterance& utterance, const std::atomic<bool>& cancelled)
    {
        const VoiceDescription& description = voice.found.description;
        if (voice.reference.empty())
            voice.reference = reference_voice_of(description);
        const ProgramText text = program_text(utterance, description);
        const bool untellable = utterance.style.speak_punctuation && !is_english(description);
        if (utterance.tokens.empty() || text.line.empty() || untellable
            || Clock::now() < voice.rests_until)
            return std::nullopt;
        const Rendering reference
            = m_reference->render({ voice.reference, 0, &utterance }, cancelled);
        std::string reason;
        for (int attempt = 0; attempt < attempts_at_an_utterance && !cancelled; ++attempt)
            try {
                const auto answer
                    = m_keeper.say({ voice.found.id, text.line, attempt > 0 }, cancelled);
                if (cancelled)
                    break;
                SpokenAnswer spoken
                    = read_spoken(description, answer, utterance, reference, voice.aligner);
                // A program that answered twice is one answer ahead. Anew, it says what it says.
                if (spoken.doubtful && attempt == 0)
                    continue;
                voice.failures = 0;
                return std::move(spoken.rendering);
            } catch (const Failure& failure) {
                reason = failure.what();
            }
        if (!cancelled)
            count_failure(voice, reason);
        return std::nullopt;
    }

    static void count_failure(Voice& voice, const std::string& reason)
    {
        if (++voice.failures % failures_before_a_rest != 0)
            return;
        voice.rests_until = Clock::now() + rest_time;
        if (voice.failures == failures_before_a_rest)
            std::fprintf(stderr, "tessavox-voice-helper: the voice %s fails, and %s reads: %s\n",
                voice.found.id.c_str(), voice.reference.c_str(), reason.c_str());
    }

    EngineKeeper& m_keeper;
    const std::unique_ptr<Engine> m_reference;
    std::vector<Voice> m_voices;
    KeptSpeech m_kept;
};

} // namespace

std::unique_ptr<Engine> make_program_engine(const VoicePlaces& places, EngineKeeper& keeper)
{
    return std::make_unique<ProgramEngine>(places, keeper);
}

std::string reference_voice_of(const VoiceDescription& voice)
{
    std::vector<EspeakVoice> voices;
    {
        EspeakLibrary library;
        voices = library.voices();
    }
    std::string wanted = lower_ascii(voice.reference.empty() ? voice.language : voice.reference);
    // Its tags are those of the languages proper.
    if (wanted.starts_with("zh"))
        wanted = "cmn";
    else if (wanted.starts_with("no"))
        wanted = "nb";
    while (!wanted.empty()) {
        for (const EspeakVoice& one : voices)
            if (one.language == wanted || lower_ascii(one.identifier) == wanted)
                return std::string(espeak_id_prefix) + one.identifier;
        const std::size_t cut = wanted.rfind('-');
        wanted.resize(cut == std::string::npos ? 0 : cut);
    }
    return std::string(espeak_id_prefix) + "gmw/en";
}

SpokenAnswer read_spoken(const VoiceDescription& voice, std::span<const std::byte> answer,
    const Utterance& utterance, const Rendering& reference, Aligner& aligner)
{
    EngineSound sound = read_sound(voice.mode, answer, voice.sample_rate);
    const AlignedMarks marks
        = aligner.align(sound.samples, sound.sample_rate, espeak_reference(reference));
    SpokenAnswer spoken;
    const double length = static_cast<double>(sound.samples.size()) / sound.sample_rate;
    const double expected
        = static_cast<double>(reference.samples.size()) / reference.sample_rate + 1;
    spoken.doubtful = marks.doubtful || length + 1 > most_times_as_long * expected
        || expected > most_times_as_long * (length + 1);
    Rendering& rendering = spoken.rendering;
    rendering.phones = phones_of(marks, reference);
    rendering.words = reference.words;
    for (std::size_t word = 0; word < rendering.words.size(); ++word)
        rendering.words[word].frame = marks.words[word];
    const auto heard = heard_words(sound, program_text(utterance, voice));
    if (!heard.empty()) {
        const auto complete
            = complete_marks(utterance.tokens, heard, rendering.phones, sound.samples.size());
        for (std::size_t word = 0; word < complete.size(); ++word)
            rendering.words[word].frame = complete[word].frame;
    }
    rendering.sample_rate = sound.sample_rate;
    rendering.samples = std::move(sound.samples);
    trim(rendering, utterance.ends_sentence);
    return spoken;
}

} // namespace tessavox::voice
