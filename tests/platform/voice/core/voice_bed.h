// A voice on a test bed: a message loop, a sound device whose clock the test moves, an engine that
// sings a tone, and a listener that keeps what it hears.
#pragma once

#include "platform/voice/speech_service.h"
#include "tests/platform/voice/core/listener.h"
#include "tests/platform/voice/core/manual_device.h"
#include "tests/platform/voice/core/tone_engine.h"

namespace tessavox::voice::test {

constexpr int mono_22 = 22; // 22.05 kHz, 16 bit, mono: the engines' own

class VoiceBed {
public:
    /// A voice in the engines' format. Engines and server are the test's own if none are given.
    explicit VoiceBed(std::shared_ptr<SpeechEngines> other_engines = nullptr,
        std::unique_ptr<SoundServer> server = nullptr)
    {
        if (!server) {
            auto manual = std::make_unique<ManualDevice>();
            device = manual.get();
            server = std::move(manual);
        }
        SpeechServiceOptions options;
        options.post = [this](std::function<void()> call) { loop.post(std::move(call)); };
        options.default_output_name = "Default output";
        service = make_speech_service(
            std::move(options), other_engines ? other_engines : engines, std::move(server));
        voice = service->create_voice(listener);
        voice->AudioOutputStream()->set_FormatType(mono_22);
        voice->set_AudioOutputStream(voice->AudioOutputStream());
    }
    ~VoiceBed()
    {
        voice.reset();
        loop.run_posted();
    }

    /// Runs the message loop and the device's clock until the condition holds. False after a bound
    /// that no healthy run comes near.
    bool run_until(const std::function<bool()>& done, milliseconds step = milliseconds(5))
    {
        const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (std::chrono::steady_clock::now() < bound) {
            loop.run_posted(std::chrono::microseconds(200));
            if (done())
                return true;
            if (device)
                device->advance(step);
        }
        return false;
    }
    /// As above, but the device's clock stands.
    bool wait_until(const std::function<bool()>& done) { return run_until(done, milliseconds(0)); }
    bool has_heard(const std::string& kind, int count = 1, milliseconds step = milliseconds(5))
    {
        return run_until([&] { return listener.count(kind) >= count; }, step);
    }
    /// Forgets what was heard, speaks, and runs until all of it has been heard.
    bool speak(const TextSlice& text, int flags = SVSFlagsAsync)
    {
        listener.heard.clear();
        voice->Speak(text, flags);
        return has_heard("EndStream");
    }

    MessageLoop loop;
    Listener listener;
    const std::shared_ptr<ToneEngines> engines = std::make_shared<ToneEngines>();
    ToneEngine* const engine = engines->engine;
    ManualDevice* device = nullptr;
    std::unique_ptr<SpeechService> service;
    std::unique_ptr<SpeechVoice> voice;
};

} // namespace tessavox::voice::test
