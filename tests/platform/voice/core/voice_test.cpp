// The voice with a tone for an engine and a device whose clock the test moves.
#include "platform/voice/sound/wave_file.h"
#include "tests/contract/speech_voice_contract.h"
#include "tests/platform/files/test_folder.h"
#include "tests/platform/voice/core/voice_bed.h"

#include <gmock/gmock.h>

#include <numbers>

namespace tessavox::voice::test {
namespace {

using testing::ElementsAre;

constexpr int asynchronous = SVSFlagsAsync;
constexpr int markup = SVSFlagsAsync | SVSFIsXML;
constexpr std::int64_t word_bytes = 2250 * 2;
constexpr std::int64_t pause_bytes = ToneEngine::pause_samples * 2;
// No step within the tone is larger.
const int steepest_of_tone
    = static_cast<int>(ToneEngine::amplitude * 2 * std::numbers::pi / 50) + 2;

/// The largest step from one sample to the next.
int steepest(const std::vector<std::int16_t>& samples)
{
    int steepest = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        steepest = std::max(steepest, std::abs(samples[i] - samples[i - 1]));
    return steepest;
}

/// For the contract.
struct SystemBed {
    SpeechService& service() { return *bed.service; }
    SpeechVoiceEvents& events() { return bed.listener; }
    std::string path(const std::string& name) const { return folder / name; }
    TestFolder folder;
    VoiceBed bed;
};

struct VoiceTest : testing::Test {
    VoiceBed bed;
    ManualDevice& device = *bed.device;
    SpeechVoice& voice = *bed.voice;
    Listener& listener = bed.listener;
};

TEST_F(VoiceTest, EventsComeInTheOrderOfTheSoundAndNoneBeforeIt)
{
    listener.on_event = [&](const Heard& row) {
        const std::uint64_t played = row.kind == "StartStream" ? 0 : device.last()->played();
        EXPECT_LE(row.position, static_cast<std::int64_t>(played) * 2) << row.kind;
    };
    const int stream = voice.Speak(u"One two. Three.", asynchronous);
    ASSERT_TRUE(bed.has_heard("EndStream", 1, milliseconds(1)));
    EXPECT_THAT(listener.told(""),
        ElementsAre("StartStream", "Sentence 0+8", "Word 0+3", "Word 4+3", "Sentence 9+6",
            "Word 9+5", "EndStream"));
    std::vector<std::int64_t> positions;
    for (const Heard& row : listener.of("Word EndStream")) {
        positions.push_back(row.position);
        EXPECT_EQ(row.stream, stream);
    }
    EXPECT_THAT(positions,
        ElementsAre(0, word_bytes, 2 * word_bytes + pause_bytes, 3 * word_bytes + 2 * pause_bytes));
    EXPECT_EQ(static_cast<std::int64_t>(device.last()->played()) * 2, positions.back());
    EXPECT_EQ(listener.count("Phoneme"), 3);
    EXPECT_EQ(listener.count("Viseme"), 3);
}

TEST_F(VoiceTest, SpeakAndStopNeverWaitForTheEngineWhichMayFail)
{
    bed.engine->held = true;
    EXPECT_EQ(voice.Speak(u"A text", asynchronous), 1);
    EXPECT_EQ(voice.Speak(u"Another", asynchronous), 2);
    ASSERT_TRUE(bed.has_heard("StartStream", 1, milliseconds(0)));
    EXPECT_FALSE(voice.WaitUntilDone(0));
    voice.Speak(u"", SVSFPurgeBeforeSpeak);
    EXPECT_TRUE(voice.WaitUntilDone(0));
    bed.engine->held = false;
    ASSERT_TRUE(bed.speak(u"A third"));
    EXPECT_EQ(listener.heard.back().stream, 3);
    bed.engine->broken = true;
    ASSERT_TRUE(bed.speak(u"One. Two."));
    EXPECT_THAT(listener.told(""), ElementsAre("StartStream", "EndStream"));
    EXPECT_EQ(device.opened(), 1) << "the device stays open from one stream to the next";
    EXPECT_TRUE(bed.wait_until([&] { return !device.last()->open; })) << "but not for ever";
}

TEST_F(VoiceTest, APauseHoldsSoundAndEventsAndResumeGoesOnWithTheNextSample)
{
    voice.Speak(u"One two three four five six", asynchronous);
    ASSERT_TRUE(bed.has_heard("Word", 2));
    voice.Pause();
    ASSERT_TRUE(bed.wait_until([&] { return device.last()->paused; }));
    bed.loop.run_posted();
    const std::size_t events = listener.heard.size();
    const std::uint64_t played = device.last()->played();
    for (int i = 0; i < 20; ++i) {
        device.advance(milliseconds(50));
        bed.loop.run_posted(std::chrono::microseconds(500));
    }
    EXPECT_EQ(device.last()->played(), played);
    EXPECT_EQ(listener.heard.size(), events);
    voice.Resume();
    ASSERT_TRUE(bed.has_heard("EndStream"));
    EXPECT_EQ(listener.count("Word"), 6);
    EXPECT_EQ(device.sound().size(), 6U * 2250 + ToneEngine::pause_samples);
    EXPECT_LE(steepest(device.sound()), steepest_of_tone);

    listener.heard.clear();
    voice.Pause();
    voice.Speak(u"One", asynchronous);
    voice.Speak(u"Two", SVSFDefault); // nobody could resume it: does not wait
    EXPECT_FALSE(voice.WaitUntilDone(-1));
    EXPECT_TRUE(listener.heard.empty());
    voice.Speak(u"", SVSFPurgeBeforeSpeak);
    voice.Resume();
    EXPECT_TRUE(voice.WaitUntilDone(-1));
    ASSERT_TRUE(bed.speak(u"Three"));
    EXPECT_THAT(listener.told("Word"), ElementsAre("Word 0+5"));
}

TEST_F(VoiceTest, ANewRateActsFromTheNextUnspokenWord)
{
    for (const int rate : { -10, -4, 5, 10 }) {
        VoiceBed own;
        own.voice->Speak(u"a b c d e f g h i j k l m n o p. q r s t u v.", asynchronous);
        ASSERT_TRUE(own.has_heard("Word", 3));
        const int made = own.engine->renderings;
        own.voice->set_Rate(rate);
        ASSERT_TRUE(own.wait_until([&] { return own.engine->renderings > made; }));
        ASSERT_TRUE(own.has_heard("EndStream"));
        const std::vector<Heard> words = own.listener.of("Word");
        ASSERT_EQ(words.size(), 22U) << "each word once, at rate " << rate;
        int slow = 0;
        for (std::size_t i = 0; i < words.size(); ++i) {
            EXPECT_EQ(words[i].first, static_cast<int>(i) * 2 + (i > 15 ? 1 : 0));
            if (i > 0 && words[i].position - words[i - 1].position == word_bytes)
                ++slow;
        }
        EXPECT_GE(slow, 3) << rate;
        EXPECT_LE(slow, 6) << "only what the device had already keeps its rate, " << rate;
        EXPECT_EQ(own.listener.count("Sentence"), 2);
        EXPECT_LE(steepest(own.device->sound()), steepest_of_tone) << rate;
    }
}

TEST_F(VoiceTest, ANewVolumeIsHeardWithinTheDevicesBufferAndMakesNoStep)
{
    voice.Speak(u"a b c d e f g h i j k l m n o p q r", asynchronous);
    ASSERT_TRUE(bed.has_heard("Word", 5));
    const auto at = static_cast<std::ptrdiff_t>(device.last()->played());
    voice.set_Volume(50);
    ASSERT_TRUE(bed.has_heard("EndStream"));
    const std::vector<std::int16_t> sound = device.sound();
    const auto changed = sound.begin() + at + 22050 * 15 / 100;
    EXPECT_NEAR(*std::max_element(sound.begin(), sound.begin() + at), ToneEngine::amplitude, 20);
    EXPECT_NEAR(*std::max_element(changed, sound.end()), ToneEngine::amplitude / 2, 20);
    EXPECT_LE(steepest(sound), steepest_of_tone);
}

TEST_F(VoiceTest, TagsAreToldWhereTheyAct)
{
    ASSERT_TRUE(
        bed.speak(u"<bookmark mark='1st'/>a<silence msec='500'/><bookmark mark='2'/>b", markup));
    EXPECT_THAT(listener.told("Bookmark Word"),
        ElementsAre("Bookmark 1st", "Word 22+1", "Bookmark 2", "Word 64+1"));
    EXPECT_EQ(listener.of("Bookmark")[0].second, 1) << "the number that the name begins with";
    const std::vector<Heard> words = listener.of("Word");
    EXPECT_EQ(words[1].position - words[0].position, word_bytes + 22050);

    ASSERT_TRUE(
        bed.speak(u"<voice required='Name=Anna'>a</voice> b <voice required='Name=Bert'>c d</voice>"
                  u" e <voice required='Name=Nobody'>f</voice>",
            markup));
    EXPECT_THAT(listener.told("Word VoiceChange"),
        ElementsAre("Word 28+1", "Word 38+1", "VoiceChange Bert", "Word 68+1", "Word 70+1",
            "VoiceChange Anna", "Word 80+1", "Word 112+1"));
}

TEST_F(VoiceTest, PersistentMarkupStaysInForceForLaterCalls)
{
    const std::u16string fast = u"<rate absspeed='10'/>";
    const std::tuple<std::u16string, int, int> rows[] = {
        { fast + u"a b", markup, 10 },
        { u"a b", markup, 0 },
        { fast + u"a b", markup | SVSFPersistXML, 10 },
        { u"a b", markup, 10 },
        { u"a b<rate absspeed='0'/>", markup | SVSFPersistXML, 10 },
        { u"a b", markup, 0 },
    };
    for (const auto& [spoken, flags, rate] : rows) {
        ASSERT_TRUE(bed.speak(spoken, flags));
        const std::vector<Heard> words = listener.of("Word");
        ASSERT_EQ(words.size(), 2U);
        EXPECT_EQ(words[1].position - words[0].position, 2 * ToneEngine::word_samples(rate));
    }
}

TEST_F(VoiceTest, ASynchronousSpeakBringsItsEventsWithinItAndTheirHandlersMayEndTheVoice)
{
    device.absent = true; // whose clock the test would have to move
    voice.set_Rate(10);
    voice.Speak(u"One two", SVSFDefault);
    EXPECT_THAT(listener.told("StartStream Word EndStream"),
        ElementsAre("StartStream", "Word 0+3", "Word 4+3", "EndStream"));
    listener.heard.clear();
    listener.on_event = [&](const Heard& row) {
        if (row.kind == "Word" && row.stream == 2)
            bed.voice->Speak(u"More", SVSFDefault | SVSFPurgeBeforeSpeak);
        if (row.kind == "Word" && row.stream == 3)
            bed.voice.reset();
    };
    voice.Speak(u"One two three", SVSFDefault);
    EXPECT_EQ(bed.voice, nullptr);
    EXPECT_EQ(listener.count("Word"), 2);
}

TEST_F(VoiceTest, WithoutADeviceOrWhenItVanishesTheWordsComeAllTheSame)
{
    device.absent = true;
    voice.set_Rate(8);
    ASSERT_TRUE(bed.speak(u"One two three."));
    EXPECT_EQ(listener.count("Word"), 3);
    listener.heard.clear();
    device.absent = false;
    voice.Speak(u"One two three four five six seven eight.", asynchronous);
    ASSERT_TRUE(bed.has_heard("Word", 3));
    EXPECT_EQ(device.opened(), 1) << "the next stream tries the device again";
    device.vanish();
    ASSERT_TRUE(bed.has_heard("EndStream"));
    EXPECT_EQ(listener.count("Word"), 8);
    EXPECT_EQ(listener.told("Word").front(), "Word 0+3");
    device.absent = false;
    ASSERT_TRUE(bed.speak(u"One"));
    EXPECT_EQ(device.opened(), 2);
}

TEST_F(VoiceTest, WhenTheDeviceHangsTheWordsGoOnAndTheSoundComesBackWhereTheyAre)
{
    std::u16string text;
    for (int i = 0; i < 1000; ++i)
        text += u"abc ";
    voice.Speak(TextSlice(text), asynchronous);
    ASSERT_TRUE(bed.has_heard("Word", 3));
    device.absent = true; // and from here on its clock stands
    ASSERT_TRUE(bed.has_heard("AudioOutput", 1, milliseconds(0)));
    EXPECT_GE(listener.count("Word"), 8);
    device.absent = false;
    ASSERT_TRUE(bed.has_heard("AudioOutput", 2, milliseconds(0)));
    EXPECT_EQ(device.opened(), 2);
    ASSERT_TRUE(bed.has_heard("Word", listener.count("Word") + 5));
    EXPECT_EQ(listener.of("AudioOutput")[0].first, 0);
    EXPECT_EQ(listener.of("AudioOutput")[1].first, 1);
    const std::vector<Heard> words = listener.of("Word");
    for (std::size_t i = 0; i < words.size(); ++i)
        ASSERT_EQ(words[i].first, static_cast<int>(i) * 4) << "each word once";
    // The frames that the clock had taken are silent, no more than it takes ahead.
    const std::vector<std::int16_t> sound = device.sound();
    const auto first = std::ranges::find_if(sound, [](int sample) { return sample != 0; });
    EXPECT_LE(first - sound.begin(), 22050 / 8);
}

TEST_F(VoiceTest, OutputsAndFormatsFollowTheirRules)
{
    const SpeechObjectTokens outputs = voice.GetAudioOutputs("", "");
    ASSERT_EQ(outputs.Count(), 3);
    EXPECT_EQ(outputs.Item(2).description, "Loudspeaker (right)") << "descriptions are unique";
    const auto format_spoken_in = [&] {
        EXPECT_TRUE(bed.speak(u"a"));
        return device.last()->format.type();
    };
    voice.AudioOutputStream()->set_FormatType(12);
    EXPECT_EQ(format_spoken_in(), mono_22) << "set on the stream but not given to the voice";
    voice.set_AudioOutputStream(voice.AudioOutputStream());
    EXPECT_EQ(format_spoken_in(), 12);
    voice.set_AllowAudioOutputFormatChangesOnNextSet(false);
    voice.set_AudioOutput(outputs.Item(2));
    EXPECT_EQ(voice.AudioOutputStream()->FormatType(), 12);
    EXPECT_EQ(format_spoken_in(), 12);
    EXPECT_EQ(device.last()->output, "right");
    voice.set_AllowAudioOutputFormatChangesOnNextSet(true);
    voice.set_AudioOutput(std::nullopt);
    EXPECT_EQ(voice.AudioOutputStream()->FormatType(), 39);
}

TEST(Skip, MovesBySentencesFromTheOneThatIsHeard)
{
    const std::vector<std::string> all{ "Sentence 0+8", "Sentence 9+4", "Sentence 14+4",
        "Sentence 19+4" };
    const std::pair<int, int> rows[] // how many, and the first sentence that is told after it
        = { { 0, 1 }, { -1, 0 }, { -9, 0 }, { 1, 2 }, { 2, 3 }, { 3, 4 }, { 99, 4 } };
    for (const bool paused : { false, true }) {
        for (const auto& [count, first] : rows) {
            VoiceBed own;
            own.voice->Speak(u"A b c d. E f. G h. I j.", SVSFlagsAsync);
            // At the first word of the second sentence, far from the next one: the device may run
            // on by its buffer before the event is here.
            ASSERT_TRUE(own.has_heard("Word", 5));
            if (paused)
                own.voice->Pause();
            EXPECT_EQ(own.voice->Skip("Sentence", count), count);
            own.listener.heard.clear();
            if (paused) {
                own.wait_until([&] { return own.device->last()->paused; });
                EXPECT_THAT(own.listener.told("Sentence Word"), testing::IsEmpty());
                own.voice->Resume();
            }
            ASSERT_TRUE(own.has_heard("EndStream"));
            EXPECT_EQ(own.listener.told("Sentence"),
                std::vector<std::string>(all.begin() + first, all.end()))
                << count;
        }
    }
}

TEST(Skip, CountsFromWhereTheLastOneWent)
{
    const std::pair<std::vector<int>, int> rows[] // the counts, and the first sentence that is told
        = { { { 2, 1 }, 3 }, { { 2, -1 }, 1 }, { { 4, -2, 1, 1 }, 4 }, { { 99, -1 }, 5 },
              { { 99, 1 }, 6 } };
    for (const int held_at : { -1, 0, 1 }) {
        for (const auto& [counts, first] : rows) {
            VoiceBed own;
            own.voice->set_Rate(10);
            own.voice->Pause();
            own.engine->held_at = held_at; // from there on nothing is made before the last skip
            own.voice->Speak(u"Aa. Bb. Cc. Dd. Ee. Ff.", SVSFlagsAsync);
            for (const int count : counts) {
                EXPECT_EQ(own.voice->Skip("Sentence", count), count);
                own.loop.run_posted(milliseconds(2));
            }
            own.engine->held_at = -1;
            own.voice->Resume();
            ASSERT_TRUE(own.has_heard("EndStream"));
            const std::vector<Heard> told = own.listener.of("Sentence");
            EXPECT_EQ(told.size(), 6U - static_cast<std::size_t>(first));
            EXPECT_TRUE(told.empty() || told[0].first == 4 * first)
                << counts[0] << ' ' << counts[1] << ", held at " << held_at;
        }
    }
}

// Speaking into wave files, and playing them.
struct FileTest : testing::Test {
    /// A stream into "out.wav", which the voice speaks into.
    std::shared_ptr<SpeechFileStream> take_stream(int type = mono_22)
    {
        auto stream = bed.service->create_file_stream();
        stream->set_FormatType(type);
        stream->Open(path("out.wav"), SSFMCreateForWrite, false);
        voice.set_AudioOutputStream(stream);
        return stream;
    }
    std::string path(const std::string& name) const { return folder / name; }
    std::vector<std::int16_t> samples() const
    {
        const auto reader = open_wave_file(path("out.wav"));
        std::vector<std::int16_t> all(
            reader->frames() * static_cast<std::size_t>(reader->channels()));
        reader->read(all);
        return all;
    }
    /// A wave file of that many frames, all alike. Its path, to be spoken.
    TextSlice wave_of(std::vector<std::int16_t> frames) const
    {
        const auto writer = create_wave_file(path("wave.wav"), { 22050, 16, 1 });
        writer->write(std::as_bytes(std::span(frames)));
        writer->close();
        return TextSlice(to_utf16(path("wave.wav")));
    }

    const TestFolder folder;
    VoiceBed bed;
    SpeechVoice& voice = *bed.voice;
    Listener& listener = bed.listener;
};

// Nobody sees them all: of words and sentences the first and the latest wait until they are
// fetched.
TEST_F(FileTest, AFileIsWrittenWithoutADeviceAndItsEventsComeAfterwards)
{
    auto stream = take_stream();
    voice.Speak(u"One two three four. Five.", SVSFlagsAsync);
    ASSERT_TRUE(voice.WaitUntilDone(-1));
    EXPECT_TRUE(listener.heard.empty());
    bed.loop.run_posted();
    EXPECT_THAT(listener.told(""),
        ElementsAre(
            "StartStream", "Sentence 0+19", "Word 0+3", "Sentence 20+5", "Word 20+4", "EndStream"));
    stream->Close();
    EXPECT_EQ(samples().size(), 5U * 2250 + 2 * ToneEngine::pause_samples);
    EXPECT_EQ(listener.heard.back().position, static_cast<std::int64_t>(samples().size() * 2));
    EXPECT_EQ(bed.device->opened(), 0);

    listener.heard.clear();
    stream = take_stream(39); // 48 kHz, 16 bit, stereo: the times stay
    voice.Speak(u"One two", SVSFDefault);
    stream->Close();
    EXPECT_EQ(listener.of("Word").back().position, (2250 * 48000 + 11025) / 22050 * 4);
    EXPECT_EQ(listener.heard.back().position, static_cast<std::int64_t>(samples().size() * 2));
}

TEST_F(FileTest, AWritingTellsHowFarItHasComeAndCanBeEndedInBetween)
{
    auto stream = take_stream();
    bed.engine->held_at = 2;
    voice.Speak(u"One. Two three. Four. Five.", SVSFlagsAsync);
    ASSERT_TRUE(bed.wait_until([&] { return voice.spoken_units() == 14; }));
    EXPECT_FALSE(voice.WaitUntilDone(0));
    voice.Speak({}, SVSFPurgeBeforeSpeak);
    EXPECT_TRUE(voice.WaitUntilDone(0));
    stream->Close();
    EXPECT_EQ(samples().size(), 3U * 2250 + 2 * ToneEngine::pause_samples);
}

TEST_F(FileTest, AFileIsAsLoudAsTheVolumeAndTheTagsSay)
{
    for (const auto& [volume, loudest] : { std::pair(100, 4000), { 50, 2000 }, { 0, 0 } }) {
        auto stream = take_stream();
        voice.set_Volume(volume);
        voice.Speak(u"<volume level='50'>One</volume>", SVSFDefault);
        stream->Close();
        EXPECT_NEAR(std::ranges::max(samples()), loudest, 20) << volume;
    }
}

TEST_F(FileTest, AWaveFileIsPlayedAtItsOwnLevelWhateverTheVolume)
{
    const std::vector<std::int16_t> wave(22050, 5000);
    voice.set_Volume(10);
    voice.set_EventInterests(SVEDefaultInterests | SVEAudioLevel);
    voice.Speak(wave_of(wave), SVSFlagsAsync | SVSFIsFilename);
    EXPECT_EQ(voice.Skip("Sentence", 1), 0);
    voice.set_Rate(5);
    ASSERT_TRUE(bed.has_heard("EndStream"));
    EXPECT_EQ(bed.device->sound(), wave);
    EXPECT_EQ(listener.heard.back().position, 44100);
    EXPECT_NEAR(listener.count("AudioLevel"), 20, 1);
    EXPECT_EQ(listener.of("AudioLevel")[0].first, 15);
}

} // namespace
} // namespace tessavox::voice::test

namespace tessavox {

INSTANTIATE_TYPED_TEST_SUITE_P(System, SpeechVoiceContract, voice::test::SystemBed);

} // namespace tessavox
