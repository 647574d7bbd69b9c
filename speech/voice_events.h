// What the voice reports back: the session follows its streams, the selection follows its words.
#pragma once

#include "platform/speech_voice.h"
#include "speech/reading.h"
#include "speech/speech_session.h"

#include <string>
#include <vector>

namespace tessavox {

class VoiceEvents : public SpeechVoiceEvents {
public:
    VoiceEvents(DocumentControls& controls, SpeechSession& session, const ReadingPlace& place)
        : m_controls(controls)
        , m_session(session)
        , m_place(place)
    {
    }

    void Voice_StartStream(std::int32_t StreamNum, std::int64_t StreamPos) override;
    void Voice_EndStream(std::int32_t StreamNum, std::int64_t StreamPos) override;
    void Voice_VoiceChange(
        std::int32_t StreamNum, std::int64_t StreamPos, const SpeechObjectToken& Token) override;
    void Voice_Bookmark(std::int32_t StreamNumber, std::int64_t StreamPosition,
        const std::string& Bookmark, std::int32_t BookmarkId) override;
    void Voice_Word(std::int32_t StreamNum, std::int64_t StreamPos, std::int32_t CharacterPosition,
        std::int32_t Length) override;
    void Voice_Sentence(std::int32_t StreamNum, std::int64_t StreamPos,
        std::int32_t CharacterPosition, std::int32_t Length) override;
    void Voice_Phoneme(std::int32_t StreamNumber, std::int64_t StreamPosition,
        std::int32_t Duration, std::int16_t NextPhoneId, std::int32_t Feature,
        std::int16_t CurrentPhoneId) override;
    void Voice_Viseme(std::int32_t StreamNum, std::int64_t StreamPos, std::int32_t Duration,
        std::int32_t VisemeType, std::int32_t Feature, std::int32_t VisemeId) override;
    void Voice_AudioLevel(
        std::int32_t StreamNumber, std::int64_t StreamPosition, std::int32_t AudioLevel) override;
    void Voice_EnginePrivate(
        std::int32_t StreamNumber, std::int32_t StreamPosition, std::int64_t lParam) override;

private:
    void LogVoiceEvent(const std::vector<std::string>& fields);
    void HighlightWord(std::int32_t start, std::int32_t length);

    DocumentControls& m_controls;
    SpeechSession& m_session;
    const ReadingPlace& m_place;
};

} // namespace tessavox
