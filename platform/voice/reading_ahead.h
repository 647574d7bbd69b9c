// A text on its way through the speech engines.
#pragma once

#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/natural/natural_voices.h"
#include "platform/voice/playback.h"
#include "platform/voice/speech_engines.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>

namespace tessavox::voice {

/// For the text reader, to which the voice that Speak began with is -1.
class JobVoices : public VoiceChooser {
public:
    JobVoices(const VoiceCatalog& catalog, const Job& job)
        : m_catalog(catalog)
        , m_own(job.voice)
    {
    }
    std::optional<int> choose(
        std::string_view required, std::string_view optional, int current) const override
    {
        return m_catalog.choose(required, optional, current < 0 ? m_own : current);
    }
    int voice_for(const SpeechStyle& style) const { return style.voice < 0 ? m_own : style.voice; }
    /// Whether a style's voice is a natural one, which may be slow.
    bool is_natural(const SpeechStyle& style) const
    {
        const int voice = voice_for(style);
        return voice >= 0 && static_cast<std::size_t>(voice) < m_catalog.tokens().size()
            && is_natural_voice(m_catalog.tokens()[static_cast<std::size_t>(voice)].id);
    }

private:
    const VoiceCatalog& m_catalog;
    int m_own;
};

inline int rate_for(const SpeechStyle& style, int voice_rate)
{
    return std::clamp(voice_rate + style.rate, -10, 10);
}

enum class Pace {
    Live, // heard as it is made: begins with little, and stays some seconds ahead
    Fast // as much as the engines can do
};

/// An item, and the place in the text from which it is read again.
struct Placed {
    SpeechItem item;
    ReadingPlace place;
};

/// An item as it is spoken; of an utterance with its sound.
struct Spoken : Placed {
    int voice = -1; // both as ordered
    int rate = 0;
    Rendering rendering; // without a sample rate if no engine could speak it
};

/// Reads the text and orders what it reads from the engines, so that there is always some seconds'
/// work for them beyond what was taken.
class ReadingAhead {
public:
    ReadingAhead(const JobVoices& voices, const Playback& playback, const Job& job,
        RenderQueue& engines, Pace pace, const ReadingPlace& start);

    /// Reads and orders as much as is worth it. Never waits.
    void order();
    /// Waits for the next item. Nothing at the end of the text, or once `interrupted` says so.
    std::optional<Spoken> next(const std::function<bool()>& interrupted);
    bool at_end() const { return m_all_read && m_items.empty(); }
    /// Where the reading has come to.
    ReadingPlace place() const { return m_reader.place(); }

    /// Goes on from there; what was read is forgotten.
    void go_to(const ReadingPlace& place);
    /// These come next, spoken anew.
    void put_back(std::deque<Placed> items);
    /// What is ordered at another rate than the one in force is ordered anew.
    void follow_rate();

private:
    bool read_one();
    bool far_enough() const;
    bool divide_last();
    void forget_orders();

    const JobVoices& m_voices;
    const Playback& m_playback;
    const Job& m_job;
    RenderQueue& m_engines;
    const Pace m_pace;
    TextReader m_reader;
    bool m_all_read = false;
    std::size_t m_units_read = 0; // of text, since the listener has waited for the first item
    std::deque<Spoken> m_items; // read and not taken
    std::size_t m_ordered = 0; // so many of them, from the first
};

} // namespace tessavox::voice
