// What the voice reports back: the session follows its streams, the selection follows its words.
#pragma once

#include "platform/speech_voice.h"

#include <string>

namespace tessavox {

class DocumentSpeech;

class VoiceEvents : public SpeechVoiceEvents {
public:
    explicit VoiceEvents(DocumentSpeech& speech)
        : m_speech(speech)
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
    void Voice_AudioOutput(bool reachable) override;

private:
    template <class... Fields> void LogVoiceEvent(const char* name, const Fields&... fields);
    void HighlightWord(std::int32_t start, std::int32_t length);

    DocumentSpeech& m_speech;
};

} // namespace tessavox
