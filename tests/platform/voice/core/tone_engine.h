// An engine that sings: what comes of it can be told sample by sample.
#pragma once

#include "platform/failure.h"
#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/speech_engines.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <deque>
#include <numbers>
#include <thread>

namespace tessavox::voice::test {

/// Two voices, Anna and Bert, who sing each word as a tone of 441 Hz (882 Hz for Bert) that begins
/// and ends at rest; a word lasts 100 ms at rate 0. A sentence ends in 50 ms of silence.
struct ToneEngine : Engine {
    static constexpr int sample_rate = 22050;
    static constexpr int amplitude = 8000;
    static constexpr int pause_samples = sample_rate / 20;
    static int period(int voice) { return voice == 0 ? 50 : 25; }
    /// Samples of a word at a rate: whole periods.
    static int word_samples(int rate, int voice = 0)
    {
        const auto periods = static_cast<int>(2250.0 / std::pow(3.0, rate / 10.0) / period(voice));
        return std::max(1, periods) * period(voice);
    }

    std::vector<SpeechObjectToken> voices() override
    {
        return { { "tone/anna", "Anna", "Anna", "Female", "Adult", "409", "Tone" },
            { "tone/bert", "Bert", "Bert", "Male", "Adult", "407", "Tone" } };
    }
    /// Nothing if it is cancelled.
    Rendering render(const RenderRequest& request, const std::atomic<bool>& cancelled) override
    {
        while ((held || renderings == held_at) && !cancelled)
            std::this_thread::yield();
        if (cancelled)
            return {};
        if (broken)
            throw Failure("The engine is broken");
        ++renderings;
        const int voice = request.voice_id == "tone/anna" ? 0 : 1;
        const int length = word_samples(request.rate, voice);
        Rendering rendering;
        rendering.sample_rate = sample_rate;
        for (std::uint32_t token = 0; token < request.utterance->tokens.size(); ++token) {
            const std::uint64_t begin = rendering.samples.size();
            rendering.words.push_back({ token, begin });
            rendering.phones.push_back({ begin, static_cast<std::uint64_t>(length), 7, 1, 0 });
            for (int i = 0; i < length; ++i) {
                const double tone = std::sin(2 * std::numbers::pi * i / period(voice));
                rendering.samples.push_back(static_cast<std::int16_t>(amplitude * tone));
            }
        }
        if (request.utterance->ends_sentence)
            rendering.samples.resize(rendering.samples.size() + pause_samples);
        return rendering;
    }

    std::atomic<bool> held{ false }; // does not answer until this is false or it is cancelled
    std::atomic<int> held_at{ -1 }; // does not answer when so many renderings are made
    std::atomic<bool> broken{ false };
    std::atomic<int> renderings{ 0 };
};

/// It, on the thread that asks for sound, at the time when that takes it.
class ToneEngines : public SpeechEngines {
public:
    ToneEngines()
    {
        std::vector<std::unique_ptr<Engine>> all;
        all.push_back(std::make_unique<ToneEngine>());
        engine = static_cast<ToneEngine*>(all[0].get());
        m_catalog = std::make_shared<VoiceCatalog>(std::move(all));
    }
    const std::shared_ptr<const VoiceCatalog>& voices() override { return m_catalog; }
    std::unique_ptr<RenderQueue> live_queue() override { return std::make_unique<Queue>(*this); }
    std::unique_ptr<RenderQueue> file_queue(std::size_t) override { return live_queue(); }

    ToneEngine* engine = nullptr;

private:
    class Queue : public RenderQueue {
    public:
        explicit Queue(ToneEngines& engines)
            : m_engines(engines)
        {
        }
        bool wants_more() const override { return m_orders.size() < 24; }
        bool pending() const override { return !m_orders.empty(); }
        void wake() override { m_woken = true; }
        void drop() override { m_orders.clear(); }
        void submit(int voice, int rate, Utterance utterance) override
        {
            m_orders.push_back({ voice, rate, std::move(utterance) });
        }
        std::optional<Result> take(const std::function<bool()>& interrupted) override
        {
            for (;;) {
                m_woken = false;
                if (interrupted() || m_orders.empty())
                    return std::nullopt;
                const auto& [voice, rate, utterance] = m_orders.front();
                Result result{ utterance, {} };
                attempt([&, voice = voice, rate = rate] {
                    result.rendering
                        = m_engines.m_catalog->render(voice, rate, result.utterance, m_woken);
                });
                if (m_woken && result.rendering.sample_rate == 0)
                    continue;
                m_orders.pop_front();
                return result;
            }
        }

    private:
        ToneEngines& m_engines;
        std::deque<std::tuple<int, int, Utterance>> m_orders; // voice, rate
        std::atomic<bool> m_woken{ false };
    };

    std::shared_ptr<const VoiceCatalog> m_catalog;
};

} // namespace tessavox::voice::test
