#include "platform/voice/engines/render_farm.h"

#include "platform/failure.h"
#include "platform/voice/engines/helper_process.h"
#include "platform/voice/engines/render_wire.h"

#include <algorithm>
#include <deque>
#include <poll.h>
#include <vector>

namespace tessavox::voice {

namespace {

// Enough for every helper to have one in work and one waiting, however unlike in length they are.
constexpr std::size_t most_jobs = 24;
constexpr std::size_t most_jobs_of_a_helper = 6;
constexpr std::size_t most_sound_bytes = 12U << 20;
// A character of ordinary text is about a fifteenth of a second, at 22 kHz and 16 bits.
constexpr std::size_t expected_bytes_of_a_character = 3000;
// How soon a cancellation is noticed.
constexpr int poll_ms = 20;

struct Job {
    enum class State { waiting, sent, done };

    std::uint64_t number = 0;
    int voice = 0;
    int rate = 0;
    Utterance utterance;
    State state = State::waiting;
    bool only_here = false; // a helper was lost with it
    Rendering rendering;

    std::size_t sound_bytes() const
    {
        return state == State::done ? rendering.samples.size() * sizeof(std::int16_t)
                                    : utterance.text.size() * expected_bytes_of_a_character;
    }
};

} // namespace

class RenderFarm::Impl {
public:
    Impl(const VoiceCatalog& catalog, std::chrono::milliseconds patience)
        : m_catalog(catalog)
        , m_patience(patience)
    {
    }

    void start(const std::string& path, int helpers)
    {
        // The first that can't be started stands for all of them.
        attempt([&] {
            for (int count = 0; count < helpers; ++count)
                m_helpers.push_back(std::make_unique<HelperProcess>(path));
        });
    }

    bool wants_more() const
    {
        if (m_jobs.empty())
            return true;
        if (m_helpers.empty() || m_jobs.size() >= most_jobs)
            return false;
        std::size_t bytes = 0;
        for (const Job& job : m_jobs)
            bytes += job.sound_bytes();
        return bytes < most_sound_bytes;
    }

    void submit(int voice, int rate, Utterance utterance)
    {
        Job& job = m_jobs.emplace_back();
        job.number = m_next_number++;
        job.voice = voice;
        job.rate = std::clamp(rate, -10, 10);
        job.utterance = std::move(utterance);
        dispatch();
    }

    bool pending() const { return !m_jobs.empty(); }

    Result take(const std::atomic<bool>& cancelled)
    {
        while (!m_jobs.empty() && m_jobs.front().state != Job::State::done) {
            if (cancelled.load(std::memory_order_relaxed))
                return {};
            Job& oldest = m_jobs.front();
            if (oldest.state == Job::State::waiting && (oldest.only_here || m_helpers.empty()))
                render_here(oldest, cancelled);
            else
                wait();
        }
        if (m_jobs.empty() || cancelled.load(std::memory_order_relaxed))
            return {};
        Result result{ std::move(m_jobs.front().utterance), std::move(m_jobs.front().rendering) };
        m_jobs.pop_front();
        return result;
    }

private:
    Job* find(std::uint64_t number)
    {
        const auto job = std::ranges::find(m_jobs, number, &Job::number);
        return job == m_jobs.end() ? nullptr : &*job;
    }

    void render_here(Job& job, const std::atomic<bool>& cancelled)
    {
        attempt([&] {
            job.rendering = m_catalog.render(job.voice, job.rate, job.utterance, cancelled);
        });
        job.state = Job::State::done;
    }

    std::size_t load_of(const HelperProcess& helper)
    {
        std::size_t load = 0;
        for (const std::uint64_t number : helper.jobs())
            if (const Job* job = find(number))
                load += 1 + job->utterance.text.size();
        return load;
    }

    // The helper with the least to do, or none if all have enough.
    HelperProcess* idlest()
    {
        HelperProcess* best = nullptr;
        std::size_t least = 0;
        for (const auto& helper : m_helpers) {
            const std::size_t load = load_of(*helper);
            if (helper->jobs().size() < most_jobs_of_a_helper && (!best || load < least)) {
                best = helper.get();
                least = load;
            }
        }
        return best;
    }

    void dispatch()
    {
        for (Job& job : m_jobs) {
            if (job.state != Job::State::waiting || job.only_here)
                continue;
            HelperProcess* helper = idlest();
            if (!helper)
                break;
            const auto& tokens = m_catalog.tokens();
            const bool known
                = job.voice >= 0 && static_cast<std::size_t>(job.voice) < tokens.size();
            if (!known) {
                job.only_here = true;
                continue;
            }
            helper->assign(job.number,
                { tokens[static_cast<std::size_t>(job.voice)].id, job.rate, job.utterance });
            job.state = Job::State::sent;
        }
        exchange();
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
            Job* job = find(helper.jobs().front());
            if (!job)
                throw Failure("an answer to nothing");
            if (auto rendering = read_answer(*answer, job->utterance.tokens.size()))
                job->rendering = std::move(*rendering);
            job->state = Job::State::done;
            helper.drop_answer();
        }
        if (!connected || helper.waiting() > m_patience)
            throw Failure("a helper is lost");
    }

    // What the helper had is rendered here. Only if it crashed, the utterance that it was speaking
    // stays silent: the engine would take the whole program along.
    void part_from(const HelperProcess* lost)
    {
        const auto place = std::ranges::find(m_helpers, lost, &std::unique_ptr<HelperProcess>::get);
        const bool crashed = (*place)->end();
        bool first = true;
        for (const std::uint64_t number : (*place)->jobs())
            if (Job* job = find(number)) {
                job->state = crashed && first ? Job::State::done : Job::State::waiting;
                job->only_here = true;
                first = false;
            }
        m_helpers.erase(place);
    }

    void wait()
    {
        std::vector<pollfd> descriptors;
        for (const auto& helper : m_helpers)
            descriptors.push_back({ helper->descriptor(),
                static_cast<short>(POLLIN | (helper->wants_to_send() ? POLLOUT : 0)), 0 });
        poll(descriptors.data(), descriptors.size(), poll_ms);
        exchange();
        dispatch();
    }

    const VoiceCatalog& m_catalog;
    std::chrono::milliseconds m_patience;
    std::vector<std::unique_ptr<HelperProcess>> m_helpers;
    std::deque<Job> m_jobs;
    std::uint64_t m_next_number = 1;
};

RenderFarm::RenderFarm(const VoiceCatalog& catalog, const std::string& helper_path, int helpers,
    std::chrono::milliseconds patience)
    : m_impl(std::make_unique<Impl>(catalog, patience))
{
    m_impl->start(helper_path, helpers);
}

RenderFarm::~RenderFarm() = default;

bool RenderFarm::wants_more() const
{
    return m_impl->wants_more();
}

void RenderFarm::submit(int voice, int rate, Utterance utterance)
{
    m_impl->submit(voice, rate, std::move(utterance));
}

bool RenderFarm::pending() const
{
    return m_impl->pending();
}

RenderFarm::Result RenderFarm::take(const std::atomic<bool>& cancelled)
{
    return m_impl->take(cancelled);
}

} // namespace tessavox::voice
