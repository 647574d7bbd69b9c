// The way of the events from the voice's own threads to the interface thread.
#pragma once

#include "platform/speech_voice.h"
#include "platform/voice/job.h"
#include "platform/voice/stream_event.h"
#include "platform/voice/wakeup.h"

#include <array>
#include <atomic>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

namespace tessavox::voice {

class VoiceCatalog;

/// Posts a call to the interface thread's message loop; any thread may use it.
using Post = std::function<void(std::function<void()>)>;

/// Collects events and hands them to the voice's listener, in one posted call for as many as there
/// are. A posted call that runs after the voice has gone does nothing.
///
/// A file is written far faster than it is spoken, often while the interface thread is blocked, so
/// of a file's undelivered words, sentences, phonemes, visemes and levels only the first of the
/// stream and the latest are kept.
class EventQueue : public std::enable_shared_from_this<EventQueue> {
public:
    /// `caller` is notified whenever something was appended.
    EventQueue(SpeechVoiceEvents& listener, std::shared_ptr<const VoiceCatalog> catalog, Post post,
        std::shared_ptr<Wakeup> caller);

    /// Any thread.
    void append(const Job& job, std::vector<StreamEvent> events);
    /// The sound output is out of reach, or there again. No purge takes that back.
    void tell_output(bool reachable);
    std::int32_t interests() const { return m_interests; }

    // The interface thread only:
    /// Drops all that is undelivered or belongs to an earlier generation.
    void start_generation(int generation);
    /// Calls the listener for what is there now; more that comes meanwhile is posted again.
    void deliver();
    /// Nothing is delivered any more.
    void close() { m_listener = nullptr; }
    bool closed() const { return m_listener == nullptr; }

    void set_interests(std::int32_t bits) { m_interests = bits; }

private:
    struct Entry {
        int generation;
        std::int32_t stream;
        std::int64_t position; // bytes
        Happening happening;
    };
    using Entries = std::list<Entry>;
    /// Of one kind of event in the file stream that is being written.
    struct Latest {
        bool first_seen = false;
        bool waiting = false;
        Entries::iterator entry;
    };

    void insert(Entry entry, bool to_file);
    bool pop(Entries& one);
    void post_delivery();
    void dispatch(const Entry& entry);

    SpeechVoiceEvents* m_listener; // interface thread
    int m_generation = 0; // interface thread
    const std::shared_ptr<const VoiceCatalog> m_catalog;
    const Post m_post;
    std::atomic<std::int32_t> m_interests{ SVEDefaultInterests };
    const std::shared_ptr<Wakeup> m_caller;

    std::mutex m_mutex; // guards what follows
    Entries m_entries;
    std::array<Latest, std::variant_size_v<Happening>> m_latest{};
    bool m_posted = false;
};

} // namespace tessavox::voice
