// The sound of a text.
#pragma once

#include "platform/voice/made_speech.h"
#include "platform/voice/reading_ahead.h"
#include "platform/voice/sound/converter.h"
#include "platform/voice/sound_source.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tessavox::voice {

/// Takes what the engines make of the text, item by item, and brings it into the stream's format.
/// Of a live reading it keeps in mind what was made but is not heard yet, so that a change of rate
/// takes hold at the next word and a skip at the next sentence.
class TextSource : public SoundSource {
public:
    /// `interests`: the kinds of events that are of use. `state` is the markup in force at the
    /// start; where the job asks for it, it becomes that at the end of the text.
    TextSource(const VoiceCatalog& catalog, const Playback& playback, const Job& job,
        RenderQueue& engines, Pace pace, std::int32_t interests, MarkupStatePtr& state);

    bool next(Piece& piece, const std::function<bool()>& interrupted) override;
    void settle(std::uint64_t frame) override { m_made.settle(frame); }
    void skip(int sentences, std::uint64_t frame) override;
    std::optional<Cut> follow_rate(std::uint64_t frame) override;
    void take_back(const Cut& cut) override;

private:
    void begin(Spoken spoken, Piece& piece);
    void begin_utterance(
        const Utterance& utterance, Spoken& spoken, MadeSpeech::Segment& segment, Piece& piece);
    void convert_some(std::vector<std::byte>& sound);
    void go_on_from(std::uint64_t frame);
    void read_on_to(std::size_t sentence, std::uint64_t frame);

    const Playback& m_playback;
    const Job& m_job;
    const JobVoices m_voices;
    const Pace m_pace;
    const std::int32_t m_interests;
    MarkupStatePtr& m_state;
    const ReadingPlace m_start;
    ReadingAhead m_ahead;
    MadeSpeech m_made;
    Converter m_converter;

    std::vector<std::int16_t> m_samples; // of the item that is being converted
    std::size_t m_converted = 0; // of these
    std::size_t m_fade_in = 0; // samples that rise from silence, after a cut
    bool m_ended = false; // the whole text is converted
    int m_voice; // of what was begun last
    std::uint64_t m_next_sequence = 0;
};

} // namespace tessavox::voice
