// The one thing that a speech engine is asked: to turn an utterance into sound.
#pragma once

#include "platform/speech_voice.h"
#include "platform/voice/utterance.h"

#include <atomic>
#include <string>
#include <vector>

namespace tessavox::voice {

/// What the engine needs to know beside the utterance.
struct RenderRequest {
    std::string voice_id; // SpeechObjectToken::id of one of this engine's voices
    int rate = 0; // -10..10, the voice's rate and the utterance's style added and clamped
    const Utterance* utterance = nullptr;
};

/// A speech engine. Any thread may call it; an engine that is not safe for that locks within.
class Engine {
public:
    virtual ~Engine() = default;

    /// Its voices, in an order that is the same at every start. Empty if its data is missing.
    virtual std::vector<SpeechObjectToken> voices() = 0;

    /// Speaks one utterance. The loudness is the engine's own: volume is applied by the caller.
    /// Every token of the utterance gets exactly one word mark. When `cancelled` turns true the
    /// call returns early with what there is.
    /// @throws Failure if the engine can't speak; the caller then goes on with the next utterance.
    virtual Rendering render(const RenderRequest& request, const std::atomic<bool>& cancelled) = 0;
};

} // namespace tessavox::voice
