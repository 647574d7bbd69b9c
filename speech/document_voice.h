// The voice of a document, from the load of its window to its close.
#pragma once

#include "platform/failure.h"
#include "platform/speech_voice.h"

#include <memory>

namespace tessavox {

class DocumentVoice {
public:
    void create(SpeechService& service, SpeechVoiceEvents& events)
    {
        m_voice = service.create_voice(events);
    }
    void release() { m_voice.reset(); }
    /// @throws Failure where there is no voice: before the load, and after a close, which a window
    /// survives if the user cancels it.
    SpeechVoice* operator->() const
    {
        if (!m_voice)
            throw Failure("the document has no voice");
        return m_voice.get();
    }

private:
    std::unique_ptr<SpeechVoice> m_voice;
};

} // namespace tessavox
