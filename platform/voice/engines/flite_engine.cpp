// The second voice: flite and its American voices behind the engine interface.
#include "platform/failure.h"
#include "platform/voice/engines/ascii_text.h"
#include "platform/voice/engines/phone_tables.h"
#include "platform/voice/engines/prosody.h"
#include "platform/voice/engines/time_stretch.h"
#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/engines/word_timing.h"

extern "C" {
#include <flite/flite.h>
cst_voice* register_cmu_us_awb(const char* voxdir);
cst_voice* register_cmu_us_kal(const char* voxdir);
cst_voice* register_cmu_us_kal16(const char* voxdir);
cst_voice* register_cmu_us_rms(const char* voxdir);
cst_voice* register_cmu_us_slt(const char* voxdir);
}

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <mutex>
#include <optional>

namespace tessavox::voice {

namespace {

enum class Melody {
    target, // by the mean and the deviation that its intonation aims at
    shift, // by a factor on what its statistics say
    stretch, // not at all, so the finished sound is shifted
};

struct FliteVoiceRow {
    std::string_view id;
    const char* name;
    const char* region;
    const char* language;
    const char* gender;
    cst_voice* (*start)(const char*);
    Melody melody;
};

constexpr FliteVoiceRow rows[] = {
    { "flite:kal16", "Kal", "America", "409", "Male", register_cmu_us_kal16, Melody::target },
    { "flite:slt", "Slt", "America", "409", "Female", register_cmu_us_slt, Melody::shift },
    { "flite:rms", "Rms", "America", "409", "Male", register_cmu_us_rms, Melody::stretch },
    { "flite:awb", "Awb", "Scotland", "809", "Male", register_cmu_us_awb, Melody::shift },
    { "flite:kal", "Kal 8 kHz", "America", "409", "Male", register_cmu_us_kal, Melody::target },
};

// The voices' own settings, which those of an utterance multiply.
constexpr float target_stretch = 1.1F;
constexpr float target_mean = 95;
constexpr float target_deviation = 11;

constexpr double emphasis_gain = 1.25;

// What stays of a pause at the start of an utterance, and at the end of one that ends no sentence.
constexpr double kept_pause_seconds = 0.02;

struct DeleteUtterance {
    void operator()(cst_utterance* utterance) const { delete_utterance(utterance); }
};
using FliteUtterance = std::unique_ptr<cst_utterance, DeleteUtterance>;

// Flite keeps tables and its list of voices for the whole process, and a voice holds the settings
// of its next utterance, so one lock guards all of it.
struct ProcessState {
    std::mutex mutex;
    bool started = false;
    std::array<cst_voice*, std::size(rows)> voices{};
    const std::atomic<bool>* cancelled = nullptr;
};

ProcessState& process_state()
{
    static ProcessState state;
    return state;
}

int go_on(const cst_wave*, int, int, int, cst_audio_streaming_info*)
{
    const std::atomic<bool>* cancelled = process_state().cancelled;
    return cancelled && cancelled->load(std::memory_order_relaxed) ? CST_AUDIO_STREAM_STOP
                                                                   : CST_AUDIO_STREAM_CONT;
}

cst_voice* started_voice(ProcessState& state, std::size_t index)
{
    if (!state.started) {
        flite_init();
        state.started = true;
    }
    if (state.voices[index])
        return state.voices[index];
    cst_voice* voice = rows[index].start(nullptr);
    if (!voice)
        throw Failure("flite can't start the voice " + std::string(rows[index].id));
    // The voice owns this from here on; it is asked between pieces of sound whether to go on.
    cst_audio_streaming_info* streaming = new_audio_streaming_info();
    streaming->asc = go_on;
    flite_feat_set(voice->features, "streaming_info", audio_streaming_info_val(streaming));
    return state.voices[index] = voice;
}

void set_prosody(cst_voice* voice, const FliteVoiceRow& row, double speed, double pitch)
{
    const bool target = row.melody == Melody::target;
    const auto factor = static_cast<float>(pitch);
    flite_feat_set_float(voice->features, "duration_stretch",
        target ? target_stretch / static_cast<float>(speed)
               : static_cast<float>(shrunken_duration(speed)));
    if (target) {
        flite_feat_set_float(voice->features, "int_f0_target_mean", target_mean * factor);
        flite_feat_set_float(voice->features, "int_f0_target_stddev", target_deviation * factor);
    } else if (row.melody == Melody::shift) {
        flite_feat_set_float(voice->features, "f0_shift", factor);
    }
}

// Reads marks out of what flite has made of a text.
class FliteReader {
public:
    FliteReader(const cst_utterance* utterance, int sample_rate, std::size_t frames)
        : m_utterance(utterance)
        , m_rate(sample_rate)
        , m_frames(frames)
    {
    }

    std::vector<PhoneMark> phones(bool emphasis) const
    {
        std::vector<PhoneMark> marks;
        std::uint64_t begin = 0;
        for (const cst_item* segment = head("Segment"); segment; segment = item_next(segment)) {
            const std::uint64_t end = std::max(begin, frame_of(item_feat_float(segment, "end")));
            const std::string name = item_feat_string(segment, "name");
            const bool pause = name == "pau";
            const bool vowel = std::string_view("aeiou").find(name[0]) != std::string_view::npos;
            const bool stressed = vowel
                && std::strcmp(flite_ffeature_string(segment, "R:SylStructure.parent.stress"), "1")
                    == 0;
            if (end > begin)
                marks.push_back({ begin, end - begin, pause ? std::int16_t{ 0 } : number_of(name),
                    viseme_of_arpabet(name),
                    static_cast<std::uint8_t>((stressed ? 1 : 0) | (emphasis && !pause ? 2 : 0)) });
            begin = end;
        }
        return marks;
    }

    // Flite's tokens are pieces of the text in their order, found again by their names.
    std::vector<HeardToken> words(const SpokenText& text) const
    {
        std::vector<HeardToken> heard;
        std::size_t at = 0;
        for (const cst_item* token = head("Token"); token; token = item_next(token)) {
            at += length_of(token, "whitespace") + length_of(token, "prepunctuation");
            const std::string name = item_feat_string(token, "name");
            if (text.utf8.compare(std::min(at, text.utf8.size()), name.size(), name) != 0)
                at = text.utf8.find(name, at);
            if (at >= text.tokens.size())
                break;
            if (const cst_item* word = item_daughter(token))
                if (const auto frame = begin_of(word))
                    heard.push_back({ text.tokens[at], *frame });
            at += name.size() + length_of(token, "punc");
        }
        return heard;
    }

private:
    // Phone names have at most three letters of five bits each.
    static std::int16_t number_of(const std::string& name)
    {
        int number = 0;
        for (const char letter : name.substr(0, 3))
            number = number << 5 | (letter & 0x1F);
        return static_cast<std::int16_t>(number);
    }

    const cst_item* head(const char* relation) const
    {
        return utt_relation_present(const_cast<cst_utterance*>(m_utterance), relation)
            ? relation_head(utt_relation(m_utterance, relation))
            : nullptr;
    }

    static std::size_t length_of(const cst_item* token, const char* feature)
    {
        return item_feat_present(token, feature) ? std::strlen(item_feat_string(token, feature))
                                                 : 0;
    }

    std::uint64_t frame_of(double seconds) const
    {
        return std::min<std::uint64_t>(
            static_cast<std::uint64_t>(std::llround(std::max(0.0, seconds) * m_rate)), m_frames);
    }

    // The end of what sounds before the word's first segment.
    std::optional<std::uint64_t> begin_of(const cst_item* word) const
    {
        const cst_item* segment
            = flite_path_to_item(word, "R:SylStructure.daughter1.daughter1.R:Segment");
        if (!segment)
            return std::nullopt;
        const cst_item* before = item_prev(segment);
        return before ? frame_of(item_feat_float(before, "end")) : 0;
    }

    const cst_utterance* m_utterance;
    int m_rate;
    std::size_t m_frames;
};

// Every utterance of flite begins and ends with a long pause. The one in front would tear a
// sentence apart that comes in several utterances and delay the first sound, so it goes after the
// end.
void move_pauses(Rendering& rendering, bool ends_sentence)
{
    if (rendering.phones.empty())
        return;
    const auto kept = static_cast<std::uint64_t>(kept_pause_seconds * rendering.sample_rate);
    const PhoneMark& first = rendering.phones.front();
    const std::uint64_t cut = first.viseme == 0 && first.frames > kept ? first.frames - kept : 0;
    rendering.samples.erase(
        rendering.samples.begin(), rendering.samples.begin() + static_cast<std::ptrdiff_t>(cut));
    for (WordMark& word : rendering.words)
        word.frame -= std::min(word.frame, cut);
    for (PhoneMark& phone : rendering.phones)
        phone.frame -= std::min(phone.frame, cut);
    rendering.phones.front().frames -= cut;

    PhoneMark& last = rendering.phones.back();
    if (ends_sentence)
        rendering.samples.resize(rendering.samples.size() + cut);
    else if (last.viseme == 0 && last.frames > kept)
        rendering.samples.resize(
            std::min<std::size_t>(rendering.samples.size(), last.frame + kept));
    if (last.viseme == 0)
        last.frames = rendering.samples.size()
            - std::min<std::uint64_t>(last.frame, rendering.samples.size());
    for (WordMark& word : rendering.words)
        word.frame = std::min<std::uint64_t>(word.frame, rendering.samples.size());
}

void amplify(std::vector<std::int16_t>& samples, double gain)
{
    for (std::int16_t& sample : samples)
        sample = static_cast<std::int16_t>(std::clamp(std::lround(sample * gain), -32767L, 32767L));
}

std::optional<std::string> replacing_phones(const Utterance& utterance)
{
    if (utterance.pronunciation.empty())
        return std::nullopt;
    auto phones = flite_phones_of_sapi(utterance.pronunciation);
    if (phones)
        phones = "pau " + *phones + " pau";
    return phones;
}

class FliteEngine : public Engine {
public:
    std::vector<SpeechObjectToken> voices() override
    {
        std::vector<SpeechObjectToken> tokens;
        for (const FliteVoiceRow& row : rows) {
            SpeechObjectToken token;
            token.id = row.id;
            token.name = row.name;
            token.gender = row.gender;
            token.age = "Adult";
            token.language = row.language;
            token.vendor = "Flite";
            token.description = std::string("English (") + row.region + "), "
                + (token.gender == "Male" ? "male" : "female") + ", " + row.name + " (Flite)";
            tokens.push_back(std::move(token));
        }
        return tokens;
    }

    Rendering render(const RenderRequest& request, const std::atomic<bool>& cancelled) override
    {
        const auto* row = std::ranges::find(rows, request.voice_id, &FliteVoiceRow::id);
        if (row == std::end(rows))
            throw Failure("no flite voice: " + request.voice_id);
        const Utterance& utterance = *request.utterance;
        const SpeechStyle& style = utterance.style;
        const SpokenText text = ascii_text(utterance);
        const auto phones = replacing_phones(utterance);
        const double speed
            = speed_factor(request.rate) * (style.emphasis ? emphasis_speed_factor : 1);
        const double pitch
            = pitch_factor(style.pitch) * (style.emphasis ? emphasis_pitch_factor : 1);

        Rendering rendering = synthesize(*row, text, phones, speed, pitch, utterance, cancelled);
        const std::vector<bool> silent = silent_in_ascii(utterance);
        for (WordMark& word : rendering.words)
            word.silent = silent[word.token];
        if (row->melody == Melody::stretch)
            stretch(rendering, 1, pitch);
        move_pauses(rendering, utterance.ends_sentence);
        if (style.emphasis)
            amplify(rendering.samples, emphasis_gain);
        return rendering;
    }

private:
    static Rendering synthesize(const FliteVoiceRow& row, const SpokenText& text,
        const std::optional<std::string>& phones, double speed, double pitch,
        const Utterance& utterance, const std::atomic<bool>& cancelled)
    {
        ProcessState& state = process_state();
        const std::lock_guard lock(state.mutex);
        cst_voice* voice = started_voice(state, static_cast<std::size_t>(&row - rows));
        set_prosody(voice, row, speed, pitch);
        state.cancelled = &cancelled;
        FliteUtterance spoken;
        const bool anything = phones || text.utf8.find_first_not_of(' ') != std::string::npos;
        if (anything && !cancelled.load(std::memory_order_relaxed))
            spoken.reset(phones ? flite_synth_phones(phones->c_str(), voice)
                                : flite_synth_text(text.utf8.c_str(), voice));
        state.cancelled = nullptr;

        Rendering rendering;
        const cst_wave* wave = spoken ? utt_wave(spoken.get()) : nullptr;
        rendering.sample_rate = wave ? wave->sample_rate : 16000;
        if (wave && wave->num_samples > 0)
            rendering.samples.assign(wave->samples, wave->samples + wave->num_samples);
        std::vector<HeardToken> heard;
        if (!rendering.samples.empty()) {
            const FliteReader reader(spoken.get(), rendering.sample_rate, rendering.samples.size());
            rendering.phones = reader.phones(utterance.style.emphasis);
            if (!phones)
                heard = reader.words(text);
        }
        rendering.words
            = complete_marks(utterance.tokens, heard, rendering.phones, rendering.samples.size());
        return rendering;
    }
};

} // namespace

std::unique_ptr<Engine> make_flite_engine()
{
    return std::make_unique<FliteEngine>();
}

} // namespace tessavox::voice
