// Where frames go to be heard: a sound device, or a clock that stands in for one.
#pragma once

#include "platform/voice/sound/pcm_format.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tessavox::voice {

/// An open stream in one format. Used by one thread; frames are counted from the opening.
/// It takes little more than 100 ms ahead of what is heard, so that volume and skips act soon.
class AudioSink {
public:
    virtual ~AudioSink() = default;
    virtual PcmFormat format() const = 0;
    /// Frames that write() takes now.
    virtual std::size_t writable() = 0;
    /// Takes whole frames, at most writable() of them; never blocks. Sound starts when enough for a
    /// smooth start is there, or at finish().
    virtual void write(std::span<const std::byte> frames) = 0;
    /// All frames of now are written: plays them out even if they are few. write() may follow
    /// later.
    virtual void finish() = 0;
    /// The count of frames heard. Never falls, never passes what was written, and stands still
    /// while paused. After flush() it counts on from where it stood.
    virtual std::uint64_t played() = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    /// Drops what is written and not heard yet; played() then equals what counts as written.
    virtual void flush() = 0;
    /// False once the device has vanished; every other call is then harmless.
    virtual bool alive() const = 0;
};

/// A sink that discards its frames in real time. Starts when the first frames come.
std::unique_ptr<AudioSink> make_clock_sink(PcmFormat format);

/// One connection to the sound server for the whole process, made at the first use and again after
/// the server has gone. Safe to use from several threads.
class SoundServer {
public:
    /// `wake` of open() may run on a thread of the server's own.
    virtual ~SoundServer() = default;
    /// Opens a stream on the named output, or on the default one if the name is empty. Waits for
    /// the server at most a second. `wake` is called when room comes free or the stream dies: it
    /// must only signal, and no lock that it takes may be held in a call to a sink. @throws Failure
    /// if there is no server or no such output.
    virtual std::unique_ptr<AudioSink> open(
        PcmFormat format, const std::string& output, std::function<void()> wake)
        = 0;
    struct Output {
        std::string name;
        std::string description;
    };
    /// The outputs that are known now; asks for them in the background at the first call and never
    /// waits. Empty as long as nothing is known.
    virtual std::vector<Output> outputs() = 0;
};

std::unique_ptr<SoundServer> make_pulse_server(const std::string& application_name);

} // namespace tessavox::voice
