// How fast the voice is: from Speak to the first sound, and a text saved to a file beside the
// programs that its engines come with. Prints one line a number; a ratio under 1 is better than the
// program that it is compared with.
//
// bench_voice --helper PROGRAM --voices FOLDER [--quick]: PROGRAM speaks (tessavox-voice-helper),
// FOLDER has the descriptions of festival's voices that come with it.
#include "platform/failure.h"
#include "platform/temporary_folder.h"
#include "platform/voice/rendering/helper_engines.h"
#include "platform/voice/sound/audio_sink.h"
#include "platform/voice/speech_service.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>
#include <random>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace tessavox;
using namespace tessavox::voice;
using Clock = std::chrono::steady_clock;

double milliseconds_since(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Tells when the first frames come, and how long there was nothing to hear afterwards.
class FirstWrite {
public:
    void written(double seconds)
    {
        const std::lock_guard lock(m_mutex);
        const auto now = Clock::now();
        if (!m_written) {
            m_written = true;
            m_when = m_plays_until = now;
            m_gaps = {};
            m_condition.notify_one();
        }
        if (now > m_plays_until && now > m_when + std::chrono::seconds(1))
            m_gaps += now - m_plays_until;
        m_plays_until = std::max(m_plays_until, now)
            + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    }
    /// Those after the first second.
    double milliseconds_of_gaps()
    {
        const std::lock_guard lock(m_mutex);
        return std::chrono::duration<double, std::milli>(m_gaps).count();
    }
    Clock::time_point wait()
    {
        std::unique_lock lock(m_mutex);
        m_condition.wait(lock, [this] { return m_written; });
        return m_when;
    }
    void reset()
    {
        const std::lock_guard lock(m_mutex);
        m_written = false;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_written = false;
    Clock::time_point m_when;
    Clock::time_point m_plays_until;
    Clock::duration m_gaps{};
};

class WatchedSink : public AudioSink {
public:
    WatchedSink(PcmFormat format, FirstWrite& first)
        : m_clock(make_clock_sink(format))
        , m_first(first)
    {
    }
    PcmFormat format() const override { return m_clock->format(); }
    std::size_t writable() override { return m_clock->writable(); }
    void write(std::span<const std::byte> frames) override
    {
        m_clock->write(frames);
        const PcmFormat form = format();
        m_first.written(static_cast<double>(frames.size()) / form.block_align() / form.rate);
    }
    void finish() override { m_clock->finish(); }
    std::uint64_t played() override { return m_clock->played(); }
    void pause() override { m_clock->pause(); }
    void resume() override { m_clock->resume(); }
    void flush() override { m_clock->flush(); }
    bool alive() const override { return true; }

private:
    std::unique_ptr<AudioSink> m_clock;
    FirstWrite& m_first;
};

class WatchedServer : public SoundServer {
public:
    explicit WatchedServer(FirstWrite& first)
        : m_first(first)
    {
    }
    std::unique_ptr<AudioSink> open(
        PcmFormat format, const std::string&, std::function<void()>) override
    {
        return std::make_unique<WatchedSink>(format, m_first);
    }
    std::vector<Output> outputs() override { return {}; }

private:
    FirstWrite& m_first;
};

class Deaf : public SpeechVoiceEvents { };

std::u16string english(std::size_t units)
{
    constexpr std::u16string_view sentences[] = {
        u"The quick brown fox jumps over the lazy dog, and nobody in the village takes notice. ",
        u"Is there any reason to believe that the river will rise again before the morning? ",
        u"He walked to the station, bought a ticket for the last train and waited in the cold. ",
        u"What the old man had written in his letter was read aloud to all who came that night. ",
    };
    std::u16string text;
    for (std::size_t i = 0; text.size() < units; ++i)
        text += sentences[i % std::size(sentences)];
    text.resize(units);
    return text;
}

/// Sentences of all lengths out of thousands of words that no other sentence orders alike.
std::u16string varied(std::size_t units)
{
    std::minstd_rand random(1);
    const auto up_to = [&random](std::size_t count) { return random() % count; };
    constexpr std::u16string_view syllables[] = { u"ba", u"con", u"der", u"el", u"fi", u"gran",
        u"hi", u"in", u"ker", u"lo", u"man", u"ner", u"os", u"pre", u"qui", u"ra", u"ster", u"tion",
        u"un", u"ver", u"wen", u"ye", u"zo", u"ing" };
    std::u16string text;
    while (text.size() < units) {
        for (std::size_t word = 0, words = 1 + up_to(2 + up_to(60)); word < words; ++word) {
            for (std::size_t part = 0, parts = 1 + up_to(4); part < parts; ++part)
                text += syllables[up_to(std::size(syllables))];
            text += up_to(9) == 0 ? u", " : up_to(40) == 0 ? u" 1,984 " : u" ";
        }
        text.back() = u"..?!"[up_to(4)];
        text += up_to(8) == 0 ? u"\n\n" : u" ";
    }
    return text;
}

long resident_kilobytes(const std::string& process)
{
    std::ifstream status("/proc/" + process + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmRSS:"))
            return std::strtol(line.c_str() + 6, nullptr, 10);
    }
    return 0;
}

/// Of this process and its helpers.
long resident_kilobytes()
{
    long sum = resident_kilobytes("self");
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream children(task.path() / "children");
        for (std::string child; children >> child;)
            sum += resident_kilobytes(child);
    }
    return sum;
}

/// Looks at the memory every few milliseconds until it ends.
class MemoryPeak {
public:
    MemoryPeak()
        : m_thread([this] {
            while (!m_over) {
                m_peak = std::max(m_peak, resident_kilobytes());
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
        })
    {
    }
    long end()
    {
        m_over = true;
        m_thread.join();
        return m_peak;
    }

private:
    std::atomic<bool> m_over{ false };
    long m_peak = 0;
    std::thread m_thread;
};

// The user's folder of voices, with a slow engine in it.
class DescribedEngine {
public:
    static std::string file()
    {
        return std::string(std::getenv("XDG_DATA_HOME")) + "/tessavox/voices/half-speed.voice";
    }

    DescribedEngine()
    {
        setenv("XDG_DATA_HOME", m_folder.path().c_str(), 1);
        std::filesystem::create_directories(m_folder / "tessavox/voices");
        std::ofstream(file())
            << "Name = Half\nLanguage = en-US\nMode = directory\nReads = " TESSAVOX_BENCH
               "\nCommand = /usr/bin/python3 " TESSAVOX_BENCH "/half_speed_engine.py {dir}\n";
    }

private:
    const TemporaryFolder m_folder;
};

class Bench {
public:
    Bench(HelperOptions helper, bool quick)
        : m_rounds(quick ? 3 : 5)
        , m_helper(std::move(helper))
    {
        start();
    }

    // All engines anew.
    void start()
    {
        SpeechServiceOptions options;
        options.post = [](const std::function<void()>&) {};
        m_voice.reset();
        m_service = make_speech_service(std::move(options), start_helper_engines(m_helper),
            std::make_unique<WatchedServer>(m_first));
        m_voice = m_service->create_voice(m_deaf);
    }

    void set_voice(const std::string& id)
    {
        SpeechObjectToken token;
        token.id = id;
        m_voice->set_Voice(token);
    }

    void first_sound(const char* what, const TextSlice& text)
    {
        std::vector<double> call;
        std::vector<double> sound;
        for (int i = 0; i < 20; ++i) {
            m_first.reset();
            const auto start = Clock::now();
            m_voice->Speak(text, SVSFlagsAsync | SVSFIsXML);
            call.push_back(milliseconds_since(start));
            sound.push_back(
                std::chrono::duration<double, std::milli>(m_first.wait() - start).count());
            m_voice->Speak(u"", SVSFPurgeBeforeSpeak);
        }
        std::printf("first sound, %s: %.2f ms (worst %.2f), the call %.3f ms\n", what,
            median(sound), *std::max_element(sound.begin(), sound.end()), median(call));
    }

    double save(const TextSlice& text, int type)
    {
        const auto start = Clock::now();
        const auto stream = m_service->create_file_stream();
        stream->set_FormatType(type);
        stream->Open(m_folder / "ours.wav", SSFMCreateForWrite, false);
        m_voice->set_AudioOutputStream(stream);
        m_voice->Speak(text, SVSFlagsAsync | SVSFIsNotXML);
        m_voice->WaitUntilDone(-1);
        m_voice->set_AudioOutput(std::nullopt);
        stream->Close();
        const double passed = milliseconds_since(start);
        // The next one writes a new file too, and isn't held up by a disk that takes this one in.
        std::filesystem::remove(m_folder / "ours.wav");
        return passed;
    }

    // Ours and theirs in turn, so that what else the machine does weighs on both.
    void against(const char* what, const TextSlice& text, int type, const std::string& command)
    {
        const std::string in = m_folder / "text.txt";
        std::ofstream(in) << to_utf8(text.view());
        const std::string line = command + " -f " + in
            + (command.starts_with("flite") ? " -o " : " -w ") + (m_folder / "theirs.wav").string()
            + " > /dev/null 2>&1";
        std::vector<double> ours;
        std::vector<double> theirs;
        for (int i = 0; i < m_rounds; ++i) {
            ours.push_back(save(text, type));
            const auto start = Clock::now();
            if (std::system(line.c_str()) != 0) {
                std::printf("%s: %s is not installed\n", what, command.c_str());
                return;
            }
            theirs.push_back(milliseconds_since(start));
            std::filesystem::remove(m_folder / "theirs.wav");
        }
        std::printf("%s: %.0f ms, %s %.0f ms, ratio %.2f\n", what, median(ours), command.c_str(),
            median(theirs), median(ours) / median(theirs));
    }

    // From nothing to the first sound, beside the program by itself.
    void festival(const std::string& name, const std::string& voice)
    {
        const std::u16string text = u"Nobody in the village took any notice of him.";
        const std::string in = m_folder / "text.txt";
        std::ofstream(in) << to_utf8(text) << '\n';
        const std::string line = "festival -b '(define voice " + voice + ")' '(define folder \""
            + m_folder.path().string() + "\")' " + m_helper.shipped_voices + "/festival.scm < " + in
            + " > /dev/null 2>&1";
        std::vector<double> ours;
        std::vector<double> theirs;
        for (int i = 0; i < m_rounds; ++i) {
            start();
            set_voice("voice:festival-" + name);
            m_first.reset();
            const auto begin = Clock::now();
            m_voice->Speak(text, SVSFlagsAsync);
            ours.push_back(
                std::chrono::duration<double, std::milli>(m_first.wait() - begin).count());
            m_voice->Speak(u"", SVSFPurgeBeforeSpeak);
            const auto start = Clock::now();
            if (std::system(line.c_str()) != 0) {
                std::printf("first sound of festival %s: it is not installed\n", name.c_str());
                return;
            }
            theirs.push_back(milliseconds_since(start));
        }
        constexpr double most_more_ms = 30;
        const double limit = median(theirs) + most_more_ms;
        std::printf("first sound of festival %s, cold: %.0f ms, %.0f ms (its own time and 30 ms), "
                    "ratio %.2f\n",
            name.c_str(), median(ours), limit, median(ours) / limit);
    }

    void gaps(const TextSlice& text)
    {
        // If the engine fails another voice reads, without gaps.
        const std::string check = m_helper.path + " --check " + DescribedEngine::file();
        if (std::system(check.c_str()) != 0)
            throw Failure("the engine at half of real time does not work");
        set_voice("voice:half-speed");
        m_first.reset();
        m_voice->Speak(text, SVSFlagsAsync | SVSFIsNotXML);
        const auto begin = Clock::now();
        m_voice->WaitUntilDone(-1);
        std::printf("gaps after the first second, engine at half of real time: %.0f ms in %.0f s\n",
            m_first.milliseconds_of_gaps(), milliseconds_since(begin) / 1000);
    }

    void memory(const TextSlice& text)
    {
        save(english(1000), 22);
        const long idle = resident_kilobytes();
        MemoryPeak peak;
        const double time = save(text, 22);
        const double most = static_cast<double>(peak.end() - idle) / 1024;
        // The voice's own thread gives its memory back after it has told of the end.
        std::this_thread::sleep_for(std::chrono::seconds(1));
        const double left = static_cast<double>(resident_kilobytes() - idle) / 1024;
        std::printf("memory while saving %zu units: %.1f MB above idle, %.1f MB after, in %.0f s\n",
            text.size(), most, left, time / 1000);
    }

private:
    const int m_rounds;
    const HelperOptions m_helper;
    const TemporaryFolder m_folder;
    FirstWrite m_first;
    Deaf m_deaf;
    std::unique_ptr<SpeechService> m_service;
    std::unique_ptr<SpeechVoice> m_voice;
};

} // namespace

int main(int argc, char** argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    HelperOptions helper;
    bool quick = false;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--helper" && i + 1 < argc)
            helper.path = argv[++i];
        else if (argument == "--voices" && i + 1 < argc)
            helper.shipped_voices = argv[++i];
        else if (argument == "--quick")
            quick = true;
    }
    try {
        const DescribedEngine half_speed;
        Bench bench(helper, quick);
        bench.set_voice("espeak:gmw/en");
        // First of all, as what the other measurements leave allocated would hide the cost.
        bench.memory(varied(quick ? 1'000'000 : 10'000'000));
        // The texts begin alike, so that nothing but their length differs.
        const std::u16string ten_words = u"One two three four five six seven eight nine ten. ";
        bench.first_sound("10 words", ten_words);
        bench.first_sound("100 kB", ten_words + english(100'000));
        bench.first_sound("10 MB", ten_words + english(10'000'000));
        bench.first_sound("10 MB without a sentence end", [] {
            std::u16string text;
            while (text.size() < 10'000'000)
                text += u"words and more words and still no end of it ";
            return TextSlice(std::move(text));
        }());
        const TextSlice chapter(english(100'000));
        bench.against("save 100 kB, 22 kHz mono", chapter, 22, "espeak-ng -v gmw/en");
        bench.against("save 100 kB, 48 kHz stereo", chapter, 39, "espeak-ng -v gmw/en");
        bench.set_voice("flite:kal16");
        bench.against("save 20 kB with kal16", english(20'000), 18, "flite -voice kal16");
        bench.festival("slt", "voice_cmu_us_slt_arctic_hts");
        bench.festival("kal", "voice_kal_diphone");
        bench.gaps(english(quick ? 300 : 900));
    } catch (const Failure& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
    return 0;
}
