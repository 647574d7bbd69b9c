#include "platform/voice/event_queue.h"

#include "platform/number_text.h"
#include "platform/voice/engines/voice_catalog.h"

#include <utility>

namespace tessavox::voice {

namespace {

// In the order of the alternatives of Happening.
struct Kind {
    std::int32_t interest;
    bool may_be_skipped; // in a file stream, as long as a later one of its kind follows
};
constexpr Kind kinds[] = {
    { SVEStartInputStream, false },
    { SVEEndInputStream, false },
    { SVEVoiceChange, false },
    { SVEBookmark, false },
    { SVEWordBoundary, true },
    { SVESentenceBoundary, true },
    { SVEPhoneme, true },
    { SVEViseme, true },
    { SVEAudioLevel, true },
};
static_assert(std::size(kinds) == std::variant_size_v<Happening>);

template <class... Cases> struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases> Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace

EventQueue::EventQueue(SpeechVoiceEvents& listener, std::shared_ptr<const VoiceCatalog> catalog,
    Post post, std::shared_ptr<Wakeup> caller)
    : m_listener(&listener)
    , m_catalog(std::move(catalog))
    , m_post(std::move(post))
    , m_caller(std::move(caller))
{
}

void EventQueue::append(const Job& job, std::vector<StreamEvent> events)
{
    const std::int32_t interests = m_interests;
    bool post = false;
    {
        const std::lock_guard lock(m_mutex);
        for (StreamEvent& event : events) {
            if (std::holds_alternative<StreamStarted>(event.happening))
                m_latest = {};
            if ((interests & kinds[event.happening.index()].interest) == 0)
                continue;
            const auto position = static_cast<std::int64_t>(
                event.frame * static_cast<std::uint64_t>(job.format.block_align()));
            insert({ job.generation, job.stream, position, std::move(event.happening) },
                job.file != nullptr);
        }
        post = !m_entries.empty() && !std::exchange(m_posted, true);
    }
    m_caller->notify();
    if (post)
        post_delivery();
}

void EventQueue::insert(Entry entry, bool to_file)
{
    const std::size_t kind = entry.happening.index();
    Latest& latest = m_latest[kind];
    if (to_file && kinds[kind].may_be_skipped && latest.waiting)
        m_entries.erase(latest.entry);
    m_entries.push_back(std::move(entry));
    latest.waiting = latest.first_seen; // the first one of a stream is never replaced
    latest.first_seen = true;
    latest.entry = std::prev(m_entries.end());
}

bool EventQueue::pop(Entries& one)
{
    const std::lock_guard lock(m_mutex);
    one.clear();
    if (m_entries.empty())
        return false;
    Latest& latest = m_latest[m_entries.front().happening.index()];
    if (latest.waiting && latest.entry == m_entries.begin())
        latest.waiting = false;
    one.splice(one.begin(), m_entries, m_entries.begin());
    return true;
}

void EventQueue::post_delivery()
{
    m_post([weak = weak_from_this()] {
        if (const std::shared_ptr<EventQueue> queue = weak.lock())
            queue->deliver();
    });
}

void EventQueue::tell_output(bool reachable)
{
    m_post([weak = weak_from_this(), reachable] {
        const std::shared_ptr<EventQueue> queue = weak.lock();
        if (queue && queue->m_listener)
            queue->m_listener->Voice_AudioOutput(reachable);
    });
}

void EventQueue::start_generation(int generation)
{
    m_generation = generation;
    const std::lock_guard lock(m_mutex);
    m_entries.clear();
    m_latest = {};
}

void EventQueue::deliver()
{
    // A handler may destroy the voice, or speak and so deliver from within.
    const std::shared_ptr<EventQueue> self = shared_from_this();
    std::size_t count = 0;
    {
        const std::lock_guard lock(m_mutex);
        m_posted = false;
        count = m_entries.size();
    }
    for (Entries one; count > 0 && m_listener && pop(one); --count) {
        const Entry& entry = one.front();
        if (entry.generation == m_generation
            && (m_interests & kinds[entry.happening.index()].interest) != 0)
            dispatch(entry);
    }
    bool post = false;
    {
        const std::lock_guard lock(m_mutex);
        post = m_listener && !m_entries.empty() && !std::exchange(m_posted, true);
    }
    if (post)
        post_delivery();
}

void EventQueue::dispatch(const Entry& entry)
{
    SpeechVoiceEvents& to = *m_listener;
    const std::int32_t stream = entry.stream;
    const std::int64_t at = entry.position;
    std::visit(
        Overloaded{
            [&](const StreamStarted&) { to.Voice_StartStream(stream, at); },
            [&](const StreamEnded&) { to.Voice_EndStream(stream, at); },
            [&](const VoiceChanged& e) {
                to.Voice_VoiceChange(
                    stream, at, m_catalog->tokens()[static_cast<std::size_t>(e.voice)]);
            },
            [&](const BookmarkReached& e) {
                to.Voice_Bookmark(stream, at, e.name, leading_number(e.name));
            },
            [&](const WordStarted& e) { to.Voice_Word(stream, at, e.position, e.length); },
            [&](const SentenceStarted& e) { to.Voice_Sentence(stream, at, e.position, e.length); },
            [&](const PhonemeStarted& e) {
                to.Voice_Phoneme(stream, at, e.milliseconds, e.next, e.feature, e.current);
            },
            [&](const VisemeStarted& e) {
                to.Voice_Viseme(stream, at, e.milliseconds, e.next, e.feature, e.current);
            },
            [&](const LevelMeasured& e) { to.Voice_AudioLevel(stream, at, e.level); },
        },
        entry.happening);
}

} // namespace tessavox::voice
