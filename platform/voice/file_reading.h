// A text on its way into a wave file.
#pragma once

#include "platform/voice/event_queue.h"
#include "platform/voice/frame_composer.h"
#include "platform/voice/job_voices.h"
#include "platform/voice/playback.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace tessavox::voice {

class RenderFarm;

/// The program that renders ahead, and how many of it. None: everything is rendered in this
/// process.
struct RenderHelpers {
    std::string path;
    int count = 0;
};

/// Writes as fast as it can; nothing is paced, and a pause, which holds the sound, does not hold
/// it. A long text is rendered ahead by helper processes. Runs on the synthesis worker.
class FileReading {
public:
    FileReading(const VoiceCatalog& catalog, Playback& playback, EventQueue& events, const Job& job,
        MarkupStatePtr& state);
    ~FileReading();
    /// Returns when the job is over.
    void run(const RenderHelpers& helpers);

private:
    void submit_ahead();
    bool take_next();
    void write_utterance(const Utterance& utterance, Rendering rendering);
    void write_silence(const Silence& silence);
    void write_bookmark(const Bookmark& bookmark);
    bool send();

    const VoiceCatalog& m_catalog;
    Playback& m_playback;
    EventQueue& m_events;
    const Job& m_job;
    MarkupStatePtr& m_state;
    const JobVoices m_voices;
    TextReader m_reader;
    bool m_all_read = false;
    std::unique_ptr<RenderFarm> m_farm;
    std::deque<SpeechItem> m_ahead; // read; the utterances among them, without content, submitted

    FrameComposer m_composer;
    int m_voice;
    std::uint64_t m_next_sequence = 0;
    std::int64_t m_spoken_units = 0; // of the text, as far as m_sound has come
    std::vector<std::byte> m_sound;
    std::vector<StreamEvent> m_happened;
};

} // namespace tessavox::voice
