// Renders utterances ahead of their use on several processors. An engine that is one global object
// can speak only once at a time within a process, so the work goes to helper processes.
#pragma once

#include "platform/voice/engines/voice_catalog.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <string>

namespace tessavox::voice {

/// Gives renderings back in the order in which their utterances came. Used by one thread, and ended
/// before that thread ends, because the helpers end with the thread that started them. A helper
/// that dies or answers nonsense costs only time: what it had is rendered in this process.
class RenderFarm {
public:
    /// Starts `helpers` processes of the program at `helper_path`, each with an engine of its own
    /// and the same catalogue. With none, or where they can't be started, all is rendered here.
    /// A helper that leaves an utterance without answer for longer than `patience` counts as dead.
    RenderFarm(const VoiceCatalog& catalog, const std::string& helper_path, int helpers,
        std::chrono::milliseconds patience = std::chrono::seconds(20));
    ~RenderFarm(); // ends the helpers and leaves no process behind

    /// Whether another utterance should be submitted before the next take(): keeps every helper
    /// busy while the memory used stays bounded.
    bool wants_more() const;
    void submit(int voice, int rate, Utterance utterance);
    /// True while something is submitted and not taken.
    bool pending() const;

    struct Result {
        Utterance utterance;
        Rendering rendering; // empty if the engine could not speak it, or crashed a helper over it
    };
    /// The oldest submitted one; blocks until it is ready. `cancelled` makes it return early,
    /// empty.
    Result take(const std::atomic<bool>& cancelled);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

/// The main loop of a helper process: reads requests from descriptor 0 and answers on descriptor 1
/// until the input ends. Returns the exit code.
int run_render_helper();

} // namespace tessavox::voice
