// A sound server with one device, whose clock the test moves.
#pragma once

#include "platform/failure.h"
#include "platform/voice/sound/audio_sink.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <mutex>

namespace tessavox::voice::test {

using std::chrono::milliseconds;

/// Holds 100 ms.
class ManualDevice : public SoundServer {
public:
    struct Stream {
        PcmFormat format;
        std::string output;
        std::function<void()> wake = {};
        std::vector<std::byte> heard = {};
        std::vector<std::byte> waiting = {};
        bool paused = false;
        bool alive = true;
        bool open = true;
        std::size_t align() const { return static_cast<std::size_t>(format.block_align()); }
        std::uint64_t played() const { return heard.size() / align(); } // frames
    };
    /// A stream that nobody else sees or changes meanwhile.
    struct Locked {
        std::unique_lock<std::mutex> lock;
        std::shared_ptr<Stream> stream;
        Stream* operator->() const { return stream.get(); }
    };

    std::unique_ptr<AudioSink> open(
        PcmFormat format, const std::string& output, std::function<void()> wake) override
    {
        if (absent)
            throw Failure("There is no device");
        const std::lock_guard lock(m_mutex);
        m_streams.push_back(std::make_shared<Stream>(Stream{ format, output, std::move(wake) }));
        return std::make_unique<Sink>(*this, m_streams.back());
    }
    std::vector<Output> outputs() override
    {
        return { { "left", "Loudspeaker" }, { "right", "Loudspeaker" } };
    }

    /// Lets the sound run on: at most as far as there is some.
    void advance(milliseconds time)
    {
        std::function<void()> wake;
        if (const Locked stream = last(); !stream->paused && stream->open && stream->wake) {
            const auto frames = static_cast<std::size_t>(stream->format.rate * time.count() / 1000);
            const auto bytes = std::min(frames * stream->align(), stream->waiting.size());
            const auto end = stream->waiting.begin() + static_cast<std::ptrdiff_t>(bytes);
            stream->heard.insert(stream->heard.end(), stream->waiting.begin(), end);
            stream->waiting.erase(stream->waiting.begin(), end);
            wake = stream->wake;
        }
        if (wake)
            wake();
    }
    void vanish()
    {
        absent = true;
        last()->alive = false;
        const std::function<void()> wake = last()->wake;
        wake();
    }
    int opened() const
    {
        const std::lock_guard lock(m_mutex);
        return static_cast<int>(m_streams.size());
    }
    /// The stream that was opened last; before the first one a stream that isn't heard.
    Locked last() const
    {
        std::unique_lock lock(m_mutex);
        return { std::move(lock),
            m_streams.empty() ? std::make_shared<Stream>() : m_streams.back() };
    }
    /// All samples that were heard of it; the format has 16 bits and one channel.
    std::vector<std::int16_t> sound() const
    {
        const Locked stream = last();
        std::vector<std::int16_t> samples(stream->heard.size() / sizeof(std::int16_t));
        std::memcpy(samples.data(), stream->heard.data(), samples.size() * sizeof(std::int16_t));
        return samples;
    }

    std::atomic<bool> absent{ false }; // opening fails

private:
    class Sink : public AudioSink {
    public:
        Sink(ManualDevice& device, std::shared_ptr<Stream> stream)
            : m_device(device)
            , m_stream(std::move(stream))
        {
        }
        ~Sink() override { stream()->open = false; }
        PcmFormat format() const override { return m_stream->format; }
        std::size_t writable() override
        {
            const Locked now = stream();
            const auto room = static_cast<std::size_t>(now->format.rate / 10);
            return room - std::min(room, now->waiting.size() / now->align());
        }
        void write(std::span<const std::byte> frames) override
        {
            const Locked now = stream();
            now->waiting.insert(now->waiting.end(), frames.begin(), frames.end());
        }
        void finish() override { }
        std::uint64_t played() override { return stream()->played(); }
        void pause() override { stream()->paused = true; }
        void resume() override { stream()->paused = false; }
        void flush() override { stream()->waiting.clear(); }
        bool alive() const override { return stream()->alive; }

    private:
        Locked stream() const { return { std::unique_lock(m_device.m_mutex), m_stream }; }
        ManualDevice& m_device;
        std::shared_ptr<Stream> m_stream;
    };

    mutable std::mutex m_mutex;
    std::vector<std::shared_ptr<Stream>> m_streams;
};

} // namespace tessavox::voice::test
