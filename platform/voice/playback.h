// What the three threads of a voice share: the interface thread that gives the orders, the
// synthesis worker that makes the sound, and the pacer that plays it.
#pragma once

#include "platform/voice/job.h"
#include "platform/voice/sound_ring.h"
#include "platform/voice/speech_engines.h"
#include "platform/voice/stream_event.h"
#include "platform/voice/wakeup.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace tessavox::voice {

/// The queue of jobs, and the one that is being spoken with its ring of sound and its events. A
/// monitor: every function locks, none waits for the engine, the device or the disk while it does.
class Playback {
public:
    /// `caller` is notified whenever a job has left.
    explicit Playback(std::shared_ptr<Wakeup> caller);

    // --- The interface thread.
    void enqueue(std::shared_ptr<Job> job);
    /// Drops every job; what the device holds is flushed by the pacer.
    void purge();
    void set_paused(bool paused);
    bool paused() const;
    void set_rate(int rate);
    void set_volume(int volume) { m_volume = volume; }
    /// Moves in the text that is spoken or, if none is, in the first that will be. Returns false if
    /// there is none.
    bool skip(int count);
    /// Ends both threads' loops.
    void stop();
    bool idle() const;
    bool holds(const Job& job) const;
    /// Whether it is paused and something waits for it that makes a sound.
    bool held_by_pause() const;

    // --- Any thread.
    int rate() const { return m_rate; }
    int volume() const { return m_volume; }
    /// How far the text of the current job is spoken or written, in UTF-16 code units.
    std::int64_t spoken_units() const { return m_spoken_units; }
    void set_spoken_units(const Job& job, std::int64_t units);
    /// Rises with every order that the worker should look at.
    int order_version() const { return m_order_version; }

    // --- The synthesis worker.
    /// Waits for the next job, which then is the current one; null when the voice ends.
    std::shared_ptr<Job> take_job();
    /// What is woken at an order while the worker may wait for an engine; null: nothing.
    void set_awaited(RenderQueue* engines);
    /// Puts sound behind what is there, and events beside it, as soon as there is room. Returns
    /// false without having taken anything if an order came since `order_version`.
    bool append(const Job& job, int order_version, std::span<const std::byte> sound,
        std::vector<StreamEvent>& events);
    /// All sound and events of the job are appended.
    void complete(const Job& job);
    /// Waits until the job is over or append() would return false.
    void wait_for_order(const Job& job, int order_version);
    struct Skip {
        std::vector<int> counts; // one after the other
        std::uint64_t frame; // up to which was heard; the ring goes on there
    };
    std::optional<Skip> take_skip(const Job& job);
    /// The first frame that can still be changed.
    std::uint64_t changeable_from(const Job& job) const;
    /// Drops the sound from `frame` on and the events from there on that are not older than
    /// `sequence`. Returns false if that is too late, or too early: the frame is not appended yet.
    bool cut(const Job& job, std::uint64_t frame, std::uint64_t sequence);
    /// The current job is over.
    void finish(const Job& job);

    // --- The pacer.
    struct Orders {
        bool stopping = false;
        bool flush = false; // something was purged; asked for once
        bool paused = false;
        bool skip = false; // drop what is not heard, then call dropped_unheard()
        std::shared_ptr<Job> job; // the one to play; null: none
    };
    Orders orders();
    void dropped_unheard(const Job& job, std::uint64_t heard);
    /// Moves at most `count` frames to `out`. Returns whether that was the last of the job.
    bool take_sound(const Job& job, std::size_t count, std::vector<std::byte>& out);
    struct Due {
        std::vector<StreamEvent> events; // before `heard`
        bool ended = false; // everything of the job is heard
        std::optional<std::uint64_t> next; // frame of the next event
        bool sound_waits = false; // there is more to play
    };
    Due due(const Job& job, std::uint64_t heard);
    Wakeup& pacer() { return *m_pacer; }
    /// For the sound server, whose thread may outlive the voice.
    std::shared_ptr<Wakeup> shared_pacer() const { return m_pacer; }

private:
    bool is_current(const Job& job) const { return m_current.get() == &job; }
    bool ordered(const Job& job, int order_version) const;
    void order();
    void leave_current();

    std::atomic<int> m_rate{ 0 };
    std::atomic<int> m_volume{ 100 };
    std::atomic<std::int64_t> m_spoken_units{ 0 };
    std::atomic<int> m_order_version{ 0 };
    const std::shared_ptr<Wakeup> m_pacer = std::make_shared<Wakeup>();
    const std::shared_ptr<Wakeup> m_caller;

    mutable std::mutex m_mutex; // guards what follows
    std::condition_variable m_worker;
    std::deque<std::shared_ptr<Job>> m_queue;
    std::shared_ptr<Job> m_current;
    RenderQueue* m_awaited = nullptr;
    bool m_stopping = false;
    bool m_paused = false;
    bool m_flush = false;
    bool m_complete = false;
    std::vector<int> m_skips; // ordered
    std::optional<std::uint64_t> m_skip_from; // the pacer has dropped what was not heard
    SoundRing m_ring;
    std::deque<StreamEvent> m_events; // by frame
};

} // namespace tessavox::voice
