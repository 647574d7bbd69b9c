// A speech service that writes down what it is asked for, and speaks when the test says so.
#pragma once

#include "platform/speech_voice.h"

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tessavox {

/// Everything asked of one voice, in order, as lines such as `Speak "one two" 11`. It outlives the
/// voice.
class VoiceRecord {
public:
    explicit VoiceRecord(SpeechVoiceEvents& events)
        : m_events(events)
    {
    }

    /// Writes a call down. @throws Failure if calls of that name are to fail.
    void note(const std::string& name, const std::string& arguments = {});
    /// The lines since the last call.
    std::vector<std::string> take_calls() { return std::exchange(calls, {}); }
    /// Makes every call of that name fail from now on.
    void fail(const std::string& name) { failing.insert(name); }
    void mend() { failing.clear(); }

    // The voice speaks --------------------------------------------------------------------------
    void start_stream() { m_events.Voice_StartStream(1, 0); }
    void word(std::int32_t position, std::int32_t length)
    {
        m_events.Voice_Word(1, 0, position, length);
    }
    void end_stream() { m_events.Voice_EndStream(1, 0); }
    SpeechVoiceEvents& events() { return m_events; }

    std::vector<std::string> calls;
    std::set<std::string> failing;
    bool released = false;
    std::string last_text; // of the last Speak, as UTF-8
    TextSlice last_slice; // the same as it was given

private:
    SpeechVoiceEvents& m_events;
};

SpeechObjectToken token_named(const std::string& description);

struct RecordingSpeech : SpeechService {
    std::unique_ptr<SpeechVoice> create_voice(SpeechVoiceEvents& events) override;
    std::shared_ptr<SpeechFileStream> create_file_stream() override;

    VoiceRecord& voice(std::size_t index = 0) { return *records.at(index); }

    std::vector<SpeechObjectToken> voices{ token_named("Anna"), token_named("Bob") };
    std::vector<SpeechObjectToken> outputs{ token_named("Speakers") };
    std::vector<std::shared_ptr<VoiceRecord>> records;
};

} // namespace tessavox
