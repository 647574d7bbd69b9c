// A text on its way to the sound device.
#pragma once

#include "platform/voice/frame_composer.h"
#include "platform/voice/job_voices.h"
#include "platform/voice/playback.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace tessavox::voice {

/// Reads, renders and converts a little more than a second ahead of what is heard. What was made
/// but is not heard yet is kept in mind, so that a change of rate takes hold at the next word and a
/// skip at the next sentence. Runs on the synthesis worker.
class LiveReading {
public:
    /// `state` is the markup in force at the start; where the job asks for it, it becomes that at
    /// the end of the text.
    LiveReading(
        const VoiceCatalog& catalog, Playback& playback, const Job& job, MarkupStatePtr& state);
    /// Returns when the job is over.
    void run();

private:
    struct Placed {
        SpeechItem item;
        ReadingPlace place;
    };
    /// An item that is in the ring, wholly or in part.
    struct Segment {
        Placed placed;
        std::uint64_t begin = 0; // frame
        int rate = 0; // with which it was rendered
        int voice = -1;
        int voice_before = -1;
        std::vector<std::uint64_t> words; // frame of each token
        std::uint64_t first_sequence = 0;
    };
    struct Sentence {
        ReadingPlace place;
        std::uint64_t frame = 0;
    };

    std::optional<Placed> next_placed();
    void shorten_first(Placed& placed);
    bool begin_next_item();
    void begin_utterance(Segment& segment, const Utterance& utterance);
    void begin_silence(const Silence& silence);
    void begin_bookmark(const Segment& segment, const Bookmark& bookmark);
    void convert_some();
    void send_pending();
    void end_stream();
    bool wants_new_rate(const Segment& segment) const;
    void follow_rate();
    bool cut_at(std::size_t segment, std::size_t word);
    void move(const Playback::Skip& skip);
    void read_on_to(std::ptrdiff_t sentence, std::uint64_t frame);
    void forget_heard();

    const VoiceCatalog& m_catalog;
    Playback& m_playback;
    const Job& m_job;
    MarkupStatePtr& m_state;
    const JobVoices m_voices;
    const ReadingPlace m_start;
    TextReader m_reader;
    std::deque<Placed> m_backlog; // to be spoken before the reader's next item
    FrameComposer m_composer;

    std::vector<std::int16_t> m_samples; // of the item that is being converted
    std::size_t m_converted = 0; // of these
    std::size_t m_fade_in = 0; // samples that rise from silence, after a cut
    std::vector<std::byte> m_pending; // converted, not in the ring yet
    std::vector<StreamEvent> m_pending_events;
    bool m_ended = false; // the whole text is converted, its end is pending or sent

    int m_rate_version;
    bool m_rate_changed = false;
    int m_voice; // of what was begun last
    std::uint64_t m_next_sequence = 0;
    std::deque<Segment> m_in_flight;
    std::vector<Sentence> m_sentences;
};

} // namespace tessavox::voice
