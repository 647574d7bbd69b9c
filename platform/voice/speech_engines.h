// What the rest of the voice asks of the speech engines, wherever they run: the list of voices, and
// sound for utterances, rendered ahead of its use.
#pragma once

#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/utterance.h"

#include <functional>
#include <memory>
#include <optional>

namespace tessavox::voice {

/// The orders of one reading. Renderings come back in the order in which their utterances were
/// submitted, and are made ahead of being taken. One thread uses it; only wake() may be called by
/// others.
class RenderQueue {
public:
    virtual ~RenderQueue() = default;

    /// Whether another utterance may be submitted before the next take(): their number and the
    /// memory that their sound takes are bounded. Always true when nothing is pending.
    virtual bool wants_more() const = 0;
    /// Orders an utterance. `voice` is an index in the list of voices; `rate` is -10..10, the
    /// reading's and the utterance's own added, and is clamped. Never waits.
    virtual void submit(int voice, int rate, Utterance utterance) = 0;
    /// True while something is submitted and neither taken nor dropped.
    virtual bool pending() const = 0;

    struct Result {
        Utterance utterance;
        Rendering rendering; // without a sample rate if no engine could speak the utterance
    };
    /// Waits for the oldest one submitted. Nothing if nothing is pending, or as soon as
    /// `interrupted` returns true; it is asked before the wait and after each wake().
    virtual std::optional<Result> take(const std::function<bool()>& interrupted) = 0;
    /// Makes a take() that waits, or else the next one, ask `interrupted` at once.
    virtual void wake() = 0;
    /// Forgets everything submitted and not taken. What is submitted next does not wait for it.
    virtual void drop() = 0;
};

/// All engines of the process, shared by all voices. Any thread may call it. The queues must not
/// outlive it.
class SpeechEngines {
public:
    virtual ~SpeechEngines() = default;

    /// The installed voices; the first call may wait for them. The list never changes.
    virtual const std::shared_ptr<const VoiceCatalog>& voices() = 0;
    /// For speech that somebody waits to hear: renders one utterance after the other, at once.
    virtual std::unique_ptr<RenderQueue> live_queue() = 0;
    /// For a text of `text_units` that goes into a file: renders as many at a time as is worth it.
    virtual std::unique_ptr<RenderQueue> file_queue(std::size_t text_units) = 0;
};

} // namespace tessavox::voice
