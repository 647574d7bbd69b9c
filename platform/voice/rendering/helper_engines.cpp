#include "platform/voice/rendering/helper_engines.h"

#include "platform/failure.h"
#include "platform/voice/natural/natural_voices.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <mutex>
#include <poll.h>
#include <span>
#include <string_view>
#include <thread>
#include <vector>

namespace tessavox::voice {

namespace {

using Clock = std::chrono::steady_clock;

// Enough for every helper to have one in work and one waiting, however unlike in length they are.
constexpr std::size_t most_jobs = 24;
constexpr std::size_t most_jobs_of_a_helper = 6;
constexpr std::size_t most_sound_bytes = 12U << 20;
// A character of ordinary text is about a fifteenth of a second, at 22 kHz and 16 bits.
constexpr std::size_t expected_bytes_of_a_character = 3000;

constexpr const char* reference_voice = "espeak:gmw/en";

// What every version of every engine has always been able to say. The rest becomes blanks, so that
// the places of the words stay what they are.
Utterance reduced(Utterance utterance)
{
    constexpr std::u16string_view kept = u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                         u"0123456789.,;:?!'";
    for (char16_t& unit : utterance.text)
        if (kept.find(unit) == kept.npos)
            unit = u' ';
    utterance.pronunciation.clear();
    utterance.contexts.clear();
    return utterance;
}

// For less than this, another helper starts just when the text ends.
constexpr std::size_t units_worth_a_helper = 4'000;
constexpr int most_for_a_file = 8;

/// One reading's orders, on their way through helper processes.
///
/// A helper that crashes, hangs, runs out of memory or breaks the rules of the wire is ended and
/// replaced. What it had in hand is tried once more, then with the reference voice and without the
/// signs that engines stumble over, then it stays silent; what else it had is merely given to
/// another.
class HelperQueue : public RenderQueue {
public:
    HelperQueue(HelperPool& pool, std::shared_ptr<const VoiceCatalog> voices, int helpers)
        : m_pool(pool)
        , m_voices(std::move(voices))
        , m_most_helpers(static_cast<std::size_t>(std::max(helpers, 1)))
    {
        order_helpers();
        collect_helpers();
    }
    ~HelperQueue() override
    {
        drop();
        for (auto& helper : m_helpers)
            m_pool.give_back(std::move(helper));
    }

    bool wants_more() const override
    {
        if (m_jobs.empty())
            return true;
        std::size_t bytes = 0;
        for (const Job& job : m_jobs)
            bytes += job.sound_bytes();
        return m_jobs.size() < most_jobs && bytes < most_sound_bytes;
    }
    void submit(int voice, int rate, Utterance utterance) override
    {
        Job& job = m_jobs.emplace_back();
        job.number = m_pool.next_job();
        job.voice = voice;
        job.rate = std::clamp(rate, -10, 10);
        job.result.utterance = std::move(utterance);
        if (voice < 0 || static_cast<std::size_t>(voice) >= m_voices->tokens().size())
            job.state = Job::State::done;
        dispatch();
    }
    bool pending() const override { return !m_jobs.empty(); }
    std::optional<RenderQueue::Result> take(const std::function<bool()>& interrupted) override
    {
        for (;;) {
            if (interrupted() || m_jobs.empty())
                return std::nullopt;
            if (m_jobs.front().state == Job::State::done)
                break;
            wait();
        }
        Result result = std::move(m_jobs.front().result);
        m_jobs.pop_front();
        return result;
    }
    void wake() override { m_woken.raise(); }
    void drop() override
    {
        m_jobs.clear();
        for (const auto& helper : m_helpers)
            helper->drop_all();
        exchange();
    }

private:
    struct Job {
        enum class State { waiting, sent, done };
        enum Losses { none, own_voice_again, reference_voice_next, hopeless };

        std::uint64_t number = 0;
        int voice = 0;
        int rate = 0;
        RenderQueue::Result result;
        State state = State::waiting;
        int losses = 0; // helpers that were lost over it

        std::size_t units() const { return result.utterance.text.size(); }
        std::size_t sound_bytes() const
        {
            return state == State::done ? result.rendering.samples.size() * sizeof(std::int16_t)
                                        : units() * expected_bytes_of_a_character;
        }
    };

    Job* find(std::uint64_t number)
    {
        const auto job = std::ranges::find(m_jobs, number, &Job::number);
        return job == m_jobs.end() ? nullptr : &*job;
    }
    WireRequest request_for(const Job& job) const
    {
        if (job.losses >= Job::reference_voice_next)
            return { reference_voice, job.rate, reduced(job.result.utterance) };
        return { m_voices->tokens()[static_cast<std::size_t>(job.voice)].id, job.rate,
            job.result.utterance };
    }
    bool is_natural(const Job& job) const
    {
        return job.voice >= 0
            && is_natural_voice(m_voices->tokens()[static_cast<std::size_t>(job.voice)].id);
    }
    // Ends the wait for what no helper will answer, and orders one for what comes next.
    void settle_hopeless()
    {
        for (Job& job : m_jobs)
            job.state = Job::State::done;
        if (m_jobs.empty())
            return;
        order_helpers();
    }
    void dispatch()
    {
        collect_helpers();
        for (Job& job : m_jobs) {
            if (job.state != Job::State::waiting)
                continue;
            HelperProcess* helper = idlest(is_natural(job));
            if (!helper)
                break;
            helper->assign(job.number, request_for(job));
            job.state = Job::State::sent;
        }
        exchange();
    }
    // The helper with the least to do, or none if all have enough. A natural voice's program and
    // its model are loaded by one of them only.
    HelperProcess* idlest(bool for_a_natural_voice)
    {
        HelperProcess* best = nullptr;
        std::size_t least = 0;
        for (const auto& helper : std::span(m_helpers).first(for_a_natural_voice
                     ? std::min<std::size_t>(m_helpers.size(), 1)
                     : m_helpers.size())) {
            std::size_t load = 0;
            for (const std::uint64_t number : helper->jobs())
                if (const Job* job = find(number))
                    load += 1 + job->units();
            if (helper->jobs().size() < most_jobs_of_a_helper && (!best || load < least)) {
                best = helper.get();
                least = load;
            }
        }
        return best;
    }
    void order_helpers()
    {
        for (; m_helpers.size() + m_ordered < m_most_helpers; ++m_ordered)
            m_pool.order(m_orders);
    }
    void collect_helpers()
    {
        for (auto& helper : m_orders->collect()) {
            --m_ordered;
            if (helper)
                m_helpers.push_back(std::move(helper));
        }
        // Nothing to speak with is to be had: the text goes by in silence.
        if (m_helpers.empty() && m_ordered == 0)
            settle_hopeless();
    }
    // Moves what can be moved, and parts from helpers that fail to keep to the rules.
    void exchange()
    {
        std::vector<const HelperProcess*> lost;
        for (const auto& helper : m_helpers)
            if (!attempt([&] { serve(*helper); }))
                lost.push_back(helper.get());
        for (const HelperProcess* helper : lost)
            part_from(helper);
    }
    void serve(HelperProcess& helper)
    {
        // What came before a failure counts.
        const bool connected = attempt([&] { helper.exchange(); });
        while (const auto answer = helper.answer()) {
            // What was dropped is answered too, and the greeting is nobody's.
            if (Job* job = find(helper.jobs().front())) {
                const std::size_t tokens = job->result.utterance.tokens.size();
                if (auto rendering = read_answer(*answer, tokens))
                    job->result.rendering = std::move(*rendering);
                // What the reference voice was not shown is passed by, but not forgotten.
                if (job->losses >= Job::reference_voice_next)
                    for (WordMark& word : job->result.rendering.words)
                        word.silent = 0;
                job->state = Job::State::done;
            }
            helper.drop_answer();
        }
        const bool hangs = Clock::now() > deadline_of(helper);
        if (hangs)
            m_pool.end_reserve();
        if (!connected || hangs)
            throw Failure("a helper is lost");
    }
    void part_from(const HelperProcess* lost)
    {
        const auto place = std::ranges::find(m_helpers, lost, &std::unique_ptr<HelperProcess>::get);
        bool in_hand = true;
        for (const std::uint64_t number : (*place)->jobs()) {
            Job* job = find(number);
            if (job) {
                job->losses += in_hand ? 1 : 0;
                job->state = job->losses < Job::hopeless ? Job::State::waiting : Job::State::done;
            }
            // One that didn't even greet may be lost over the first that it was sent.
            in_hand = in_hand && number == 0;
        }
        m_helpers.erase(place);
        order_helpers();
    }
    Clock::time_point deadline_of(const HelperProcess& helper)
    {
        if (helper.jobs().empty())
            return Clock::time_point::max();
        const Job* job = find(helper.jobs().front());
        const bool slow = job && is_natural(*job);
        // The helper waits as long for a natural voice's program, asks it twice, and then has the
        // reference voice read.
        const int times = slow ? 3 : 1;
        const bool greets = helper.jobs().front() == 0;
        const HelperPatience::Time& patience
            = slow || greets ? m_pool.patience().slow : m_pool.patience().quick;
        const auto units = static_cast<std::int64_t>(job ? job->units() : 0);
        return helper.waiting_since() + (patience.at_least + patience.per_unit * units) * times;
    }
    void wait()
    {
        dispatch();
        if (m_jobs.empty() || m_jobs.front().state == Job::State::done)
            return;
        std::vector<pollfd> descriptors{ { m_woken.descriptor(), POLLIN, 0 },
            { m_orders->arrived.descriptor(), POLLIN, 0 } };
        Clock::time_point deadline = Clock::time_point::max();
        for (const auto& helper : m_helpers) {
            const int events = POLLIN | (helper->wants_to_send() ? POLLOUT : 0);
            descriptors.push_back({ helper->descriptor(), static_cast<short>(events), 0 });
            deadline = std::min(deadline, deadline_of(*helper));
        }
        int most_ms = -1;
        if (deadline != Clock::time_point::max()) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
            most_ms = static_cast<int>(std::max<std::int64_t>(left.count(), 0)) + 1;
        }
        poll(descriptors.data(), descriptors.size(), most_ms);
        m_woken.clear();
        dispatch();
    }

    HelperPool& m_pool;
    const std::shared_ptr<const VoiceCatalog> m_voices;
    const std::size_t m_most_helpers;
    const std::shared_ptr<HelperPool::Orders> m_orders = std::make_shared<HelperPool::Orders>();
    std::size_t m_ordered = 0; // and not arrived
    std::vector<std::unique_ptr<HelperProcess>> m_helpers;
    std::deque<Job> m_jobs;
    WakeSignal m_woken;
};

class HelperEngines : public SpeechEngines {
public:
    explicit HelperEngines(HelperOptions options)
        : m_options(std::move(options))
        , m_pool({ m_options.path, "--voices", m_options.shipped_voices }, m_options.patience)
    {
    }
    const std::shared_ptr<const VoiceCatalog>& voices() override
    {
        std::call_once(m_asked,
            [this] { m_voices = std::make_shared<VoiceCatalog>(m_pool.wait_for_voices()); });
        return m_voices;
    }
    std::unique_ptr<RenderQueue> live_queue() override { return queue_of(1); }
    std::unique_ptr<RenderQueue> file_queue(std::size_t text_units) override
    {
        const int processors = static_cast<int>(std::thread::hardware_concurrency());
        const int most = m_options.most_for_a_file > 0 ? m_options.most_for_a_file : processors;
        const std::size_t worth = 1 + text_units / units_worth_a_helper;
        return queue_of(static_cast<int>(std::min<std::size_t>(
            worth, static_cast<std::size_t>(std::clamp(most, 1, most_for_a_file)))));
    }

private:
    std::unique_ptr<RenderQueue> queue_of(int helpers)
    {
        return std::make_unique<HelperQueue>(m_pool, voices(), helpers);
    }

    const HelperOptions m_options;
    HelperPool m_pool;
    std::once_flag m_asked;
    std::shared_ptr<const VoiceCatalog> m_voices;
};

} // namespace

std::unique_ptr<SpeechEngines> start_helper_engines(HelperOptions options)
{
    return std::make_unique<HelperEngines>(std::move(options));
}

} // namespace tessavox::voice
