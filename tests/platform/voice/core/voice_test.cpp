// The voice with a tone for an engine and a device whose clock the test moves.
#include "tests/platform/voice/core/voice_bed.h"

#include "platform/failure.h"
#include "platform/voice/sound/wave_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <numbers>

namespace tessavox::voice::test {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int asynchronous = SVSFlagsAsync;
constexpr int markup = SVSFlagsAsync | SVSFIsXML;
constexpr int cd_mono_22 = 22; // 22.05 kHz, 16 bit, mono: the engine's own
constexpr std::int64_t word_bytes = 2250 * 2;
// No step within the tone is larger.
const int steepest_of_tone
    = static_cast<int>(ToneEngine::amplitude * 2 * std::numbers::pi / 50) + 2;

class VoiceTest : public testing::Test {
protected:
    void use_format(int type)
    {
        bed.voice->AudioOutputStream()->set_FormatType(type);
        bed.voice->set_AudioOutputStream(bed.voice->AudioOutputStream());
    }
    bool heard_words(int count)
    {
        return bed.run_until([&, this] { return bed.listener.count("Word") >= count; });
    }

    VoiceBed bed;
    SpeechVoice& voice = *bed.voice;
    Listener& listener = bed.listener;
};

TEST_F(VoiceTest, EventsComeInTheOrderOfTheSound)
{
    use_format(cd_mono_22);
    const int stream = voice.Speak(u"One two. Three.", asynchronous);
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_THAT(listener.told(""),
        ElementsAre("StartStream", "Sentence 0+8", "Word 0+3", "Word 4+3", "Sentence 9+6",
            "Word 9+5", "EndStream"));
    std::vector<std::int64_t> positions;
    for (const Heard& row : listener.of("Word EndStream")) {
        positions.push_back(row.position);
        EXPECT_EQ(row.stream, stream);
    }
    const std::int64_t pause = 22050 / 20 * 2;
    EXPECT_THAT(
        positions, ElementsAre(0, word_bytes, 2 * word_bytes + pause, 3 * word_bytes + 2 * pause));
    EXPECT_EQ(static_cast<std::int64_t>(bed.device->played()) * 2, positions.back());
}

TEST_F(VoiceTest, NoEventComesBeforeItsSound)
{
    listener.on_event = [&](const Heard& row) {
        if (row.kind != "StartStream") {
            EXPECT_LE(row.position, static_cast<std::int64_t>(bed.device->played()) * 4)
                << row.kind;
        }
    };
    voice.Speak(u"Some words, and some more of them. And another sentence.", asynchronous);
    ASSERT_TRUE(bed.run_until([&] { return listener.count("EndStream") == 1; }, milliseconds(1)));
    EXPECT_GE(listener.count("Phoneme"), 10);
    EXPECT_EQ(listener.count("Phoneme"), listener.count("Viseme"));
}

TEST_F(VoiceTest, SpeakAndStopNeverWaitForTheEngine)
{
    bed.engine->held = true;
    EXPECT_EQ(voice.Speak(u"A text", asynchronous), 1);
    EXPECT_EQ(voice.Speak(u"Another", asynchronous), 2);
    ASSERT_TRUE(bed.wait_until([&] { return listener.count("StartStream") == 1; }));
    voice.Speak(u"", SVSFPurgeBeforeSpeak);
    EXPECT_TRUE(voice.WaitUntilDone(0));
    bed.engine->held = false;
    EXPECT_EQ(voice.Speak(u"A third", asynchronous), 3);
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_EQ(listener.heard.back().stream, 3);
}

TEST_F(VoiceTest, OneStreamEndsBeforeTheNextStarts)
{
    voice.Speak(u"One", asynchronous);
    voice.Speak(u"", asynchronous);
    voice.Speak(u"Two", asynchronous);
    EXPECT_FALSE(voice.WaitUntilDone(0));
    ASSERT_TRUE(bed.run_to_end(3));
    std::vector<std::string> told;
    for (const Heard& row : listener.of("StartStream EndStream"))
        told.push_back(row.kind + std::to_string(row.stream));
    EXPECT_THAT(told,
        ElementsAre("StartStream1", "EndStream1", "StartStream2", "EndStream2", "StartStream3",
            "EndStream3"));
    EXPECT_EQ(bed.device->opened(), 1) << "the device stays open from one stream to the next";
    EXPECT_TRUE(voice.WaitUntilDone(-1));
}

TEST_F(VoiceTest, APurgedStreamIsHeardOfNoMore)
{
    voice.Speak(u"One two three four five six", asynchronous);
    ASSERT_TRUE(heard_words(2));
    voice.Speak(u"Seven", asynchronous | SVSFPurgeBeforeSpeak);
    const std::size_t before = listener.heard.size();
    ASSERT_TRUE(bed.run_to_end());
    for (std::size_t i = before; i < listener.heard.size(); ++i)
        EXPECT_EQ(listener.heard[i].stream, 2);
}

TEST_F(VoiceTest, APauseHoldsSoundAndEventsAndResumeGoesOnWithTheNextSample)
{
    use_format(cd_mono_22);
    voice.Speak(u"One two three four five six", asynchronous);
    ASSERT_TRUE(heard_words(2));
    voice.Pause();
    ASSERT_TRUE(bed.wait_until([&] { return bed.device->paused(); }));
    bed.loop.run_posted();
    const std::size_t events = listener.heard.size();
    const std::uint64_t played = bed.device->played();
    for (int i = 0; i < 20; ++i) {
        bed.device->advance(milliseconds(50));
        bed.loop.run_posted(std::chrono::microseconds(500));
    }
    EXPECT_EQ(bed.device->played(), played);
    EXPECT_EQ(listener.heard.size(), events);
    voice.Resume();
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_EQ(listener.count("Word"), 6);
    EXPECT_EQ(bed.device->sound().size(), 6U * 2250 + 22050 / 20);
    EXPECT_LE(steepest(bed.device->sound()), steepest_of_tone);
}

TEST_F(VoiceTest, APausedVoiceStaysSilentUntilItIsResumed)
{
    voice.Pause();
    voice.Speak(u"One", asynchronous);
    voice.Speak(u"Two", SVSFDefault); // nobody could resume it: does not wait
    EXPECT_FALSE(voice.WaitUntilDone(-1));
    EXPECT_TRUE(listener.heard.empty());
    voice.Speak(u"", SVSFPurgeBeforeSpeak);
    voice.Resume();
    EXPECT_TRUE(voice.WaitUntilDone(-1));
    voice.Speak(u"Three", asynchronous);
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_THAT(listener.told("Word"), ElementsAre("Word 0+5"));
}

TEST_F(VoiceTest, ANewRateActsFromTheNextUnspokenWord)
{
    for (const int rate : { -10, -4, 5, 10 }) {
        VoiceBed own;
        own.voice->AudioOutputStream()->set_FormatType(cd_mono_22);
        own.voice->set_AudioOutputStream(own.voice->AudioOutputStream());
        own.voice->Speak(u"a b c d e f g h i j k l m n o p. q r s t u v.", asynchronous);
        ASSERT_TRUE(own.run_until([&] { return own.listener.count("Word") >= 3; }));
        own.voice->set_Rate(rate);
        ASSERT_TRUE(own.run_to_end());
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

TEST_F(VoiceTest, TheEngineIsSomeTenSecondsAheadAndNoMore)
{
    std::u16string text;
    for (int i = 0; i < 100; ++i)
        text += u"Fifteen letters. "; // a second of ordinary speech
    use_format(cd_mono_22);
    voice.Speak(TextSlice(text), asynchronous);
    ASSERT_TRUE(bed.wait_until([&] { return bed.engine->renderings >= 10; }));
    EXPECT_LE(bed.engine->renderings, 20);
    // What is ordered but not made yet is spoken at the new rate when a slow engine comes to it.
    bed.engine->held_at = bed.engine->renderings.load();
    voice.set_Rate(10);
    bed.engine->held_at = -1;
    ASSERT_TRUE(heard_words(40));
    const std::vector<Heard> words = listener.of("Word");
    EXPECT_EQ(words[33].position - words[32].position, 2 * ToneEngine::word_samples(10, 0));
}

TEST_F(VoiceTest, ANewVolumeIsHeardWithinTheDevicesBufferAndMakesNoStep)
{
    use_format(cd_mono_22);
    voice.Speak(u"a b c d e f g h i j k l m n o p q r", asynchronous);
    ASSERT_TRUE(heard_words(5));
    const std::size_t at = bed.device->sound().size();
    voice.set_Volume(50);
    ASSERT_TRUE(bed.run_to_end());
    const std::vector<int> sound = bed.device->sound();
    const auto loudest = [&](std::size_t from, std::size_t to) {
        return *std::max_element(sound.begin() + static_cast<std::ptrdiff_t>(from),
            sound.begin() + static_cast<std::ptrdiff_t>(to));
    };
    EXPECT_NEAR(loudest(0, at), ToneEngine::amplitude, 20);
    EXPECT_NEAR(loudest(at + 22050 * 15 / 100, sound.size()), ToneEngine::amplitude / 2, 20);
    EXPECT_LE(steepest(sound), steepest_of_tone);
}

TEST_F(VoiceTest, SkipMovesBySentencesFromTheOneThatIsHeard)
{
    struct Case {
        int count;
        std::vector<std::string> sentences; // from the skip on
    };
    const Case cases[] = {
        { 0, { "Sentence 9+4", "Sentence 14+4", "Sentence 19+4" } },
        { -1, { "Sentence 0+8", "Sentence 9+4", "Sentence 14+4", "Sentence 19+4" } },
        { -9, { "Sentence 0+8", "Sentence 9+4", "Sentence 14+4", "Sentence 19+4" } },
        { 1, { "Sentence 14+4", "Sentence 19+4" } },
        { 2, { "Sentence 19+4" } },
        { 3, {} },
        { 99, {} },
    };
    for (const bool paused : { false, true }) {
        for (const Case& c : cases) {
            VoiceBed own;
            own.voice->Speak(u"A b c d. E f. G h. I j.", asynchronous);
            // At the first word of the second sentence, far from the next one: the device may run
            // on by its buffer before the event is here.
            ASSERT_TRUE(own.run_until([&] { return own.listener.count("Word") >= 5; }));
            if (paused)
                own.voice->Pause();
            EXPECT_EQ(own.voice->Skip("Sentence", c.count), c.count);
            own.listener.heard.clear();
            if (paused) {
                own.wait_until([&] { return own.device->paused(); });
                EXPECT_THAT(own.listener.told("Sentence Word"), IsEmpty());
                own.voice->Resume();
            }
            ASSERT_TRUE(own.run_to_end());
            EXPECT_EQ(own.listener.told("Sentence"), c.sentences) << c.count;
        }
    }
}

TEST_F(VoiceTest, EachSkipCountsFromWhereTheLastOneWent)
{
    struct Case {
        std::vector<int> counts;
        std::vector<std::string> sentences;
    };
    const Case cases[] = {
        { { 2, 1 }, { "Sentence 12+3", "Sentence 16+3", "Sentence 20+3" } },
        { { 2, -1 },
            { "Sentence 4+3", "Sentence 8+3", "Sentence 12+3", "Sentence 16+3", "Sentence 20+3" } },
        { { 4, -2, 1, 1 }, { "Sentence 16+3", "Sentence 20+3" } },
        { { 99, -1 }, { "Sentence 20+3" } },
        { { 99, 1 }, {} },
    };
    for (const int held_at : { -1, 0, 1 }) {
        for (const Case& c : cases) {
            VoiceBed own;
            own.voice->set_Rate(10);
            own.voice->Pause();
            own.engine->held_at = held_at; // from there on nothing is made before the last skip
            own.voice->Speak(u"Aa. Bb. Cc. Dd. Ee. Ff.", asynchronous);
            for (const int count : c.counts) {
                EXPECT_EQ(own.voice->Skip("Sentence", count), count);
                own.loop.run_posted(std::chrono::milliseconds(2));
            }
            own.engine->held_at = -1;
            own.voice->Resume();
            ASSERT_TRUE(own.run_to_end());
            EXPECT_EQ(own.listener.told("Sentence"), c.sentences)
                << c.counts[0] << ' ' << c.counts[1] << ", held at " << held_at;
        }
    }
}

TEST_F(VoiceTest, OnlySentencesCanBeSkippedAndOnlyInAText)
{
    EXPECT_THROW(voice.Skip("Word", 1), Failure);
    EXPECT_EQ(voice.Skip("Sentence", 1), 0);
}

TEST_F(VoiceTest, AVoiceTagIsToldWhereTheVoiceReallyChanges)
{
    voice.Speak(u"<voice required='Name=Anna'>a</voice> b <voice required='Name=Bert'>c d</voice>"
                u" e <voice required='Name=Nobody'>f</voice>",
        markup);
    ASSERT_TRUE(bed.run_to_end());
    std::vector<std::string> told;
    for (const std::string& row : listener.told("Word VoiceChange"))
        told.push_back(row.substr(0, row.find('+')));
    EXPECT_THAT(told,
        ElementsAre("Word 28", "Word 38", "VoiceChange Bert", "Word 68", "Word 70",
            "VoiceChange Anna", "Word 80", "Word 112"));
}

TEST_F(VoiceTest, AVoiceSetDuringASpeakActsWithTheNextOne)
{
    const SpeechObjectToken bert = voice.GetVoices("Name=Bert", "").Item(0);
    use_format(cd_mono_22);
    voice.Speak(u"a b", asynchronous);
    voice.set_Voice(bert);
    EXPECT_EQ(voice.Voice().id, bert.id);
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_LE(steepest(bed.device->sound()), steepest_of_tone) << "Anna's tone is the lower one";
    voice.Speak(u"a b", asynchronous);
    ASSERT_TRUE(bed.run_to_end(2));
    EXPECT_GT(steepest(bed.device->sound()), steepest_of_tone * 3 / 2);
    EXPECT_EQ(listener.count("VoiceChange"), 0);
    EXPECT_THROW(voice.set_Voice(SpeechObjectToken()), Failure);
}

TEST_F(VoiceTest, PersistentMarkupStaysInForceForLaterCalls)
{
    use_format(cd_mono_22);
    const std::u16string fast = u"<rate absspeed='10'/>";
    struct Case {
        std::u16string text;
        int flags;
        int rate;
    };
    const Case cases[] = {
        { fast + u"a b", markup, 10 },
        { u"a b", markup, 0 },
        { fast + u"a b", markup | SVSFPersistXML, 10 },
        { u"a b", markup, 10 },
        { u"<rate absspeed='5'/>a b", markup, 5 },
        { u"a b", markup, 10 },
        { u"a b<rate absspeed='0'/>", markup | SVSFPersistXML, 10 },
        { u"a b", markup, 0 },
    };
    for (const Case& c : cases) {
        listener.heard.clear();
        voice.Speak(c.text, c.flags);
        ASSERT_TRUE(bed.run_to_end());
        const std::vector<Heard> words = listener.of("Word");
        ASSERT_EQ(words.size(), 2U);
        EXPECT_EQ(words[1].position - words[0].position, 2 * ToneEngine::word_samples(c.rate, 0));
    }
}

TEST_F(VoiceTest, BookmarksAndSilenceKeepTheirPlace)
{
    use_format(cd_mono_22);
    voice.Speak(u"<bookmark mark='1st'/>a<silence msec='500'/><bookmark mark='2'/>b", markup);
    ASSERT_TRUE(bed.run_to_end());
    const std::vector<Heard> rows = listener.of("Bookmark Word");
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[0].name, "1st");
    EXPECT_EQ(rows[1].kind, "Word");
    EXPECT_EQ(rows[2].second, 2);
    EXPECT_EQ(rows[3].position - rows[1].position, word_bytes + 22050);
}

TEST_F(VoiceTest, ASynchronousSpeakBringsItsEventsWithin)
{
    bed.device->absent = true;
    voice.set_Rate(10);
    voice.Speak(u"One two", SVSFDefault);
    EXPECT_THAT(listener.told("StartStream Word EndStream"),
        ElementsAre("StartStream", "Word 0+3", "Word 4+3", "EndStream"));
}

TEST_F(VoiceTest, AHandlerMaySpeakStopOrEndTheVoice)
{
    bed.device->absent = true;
    bed.voice->set_Rate(10);
    listener.on_event = [&](const Heard& row) {
        if (row.kind == "Word" && row.stream == 1)
            bed.voice->Speak(u"More", SVSFDefault | SVSFPurgeBeforeSpeak);
        if (row.kind == "Word" && row.stream == 2)
            bed.voice.reset();
    };
    bed.voice->Speak(u"One two three", SVSFDefault);
    EXPECT_EQ(bed.voice, nullptr);
    EXPECT_EQ(listener.count("Word"), 2);
}

TEST_F(VoiceTest, WithoutADeviceTheWordsComeInTheirTimeAllTheSame)
{
    bed.device->absent = true;
    voice.set_Rate(10);
    voice.Speak(u"One two three.", asynchronous);
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_EQ(listener.count("Word"), 3);
    bed.device->absent = false;
    voice.Speak(u"One", asynchronous);
    ASSERT_TRUE(bed.run_to_end(2));
    EXPECT_EQ(bed.device->opened(), 1);
}

TEST_F(VoiceTest, AStreamWhoseDeviceVanishesGoesOnToItsEnd)
{
    voice.set_Rate(8);
    voice.Speak(u"One two three four five six seven eight.", asynchronous);
    ASSERT_TRUE(heard_words(3));
    bed.device->vanish();
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_EQ(listener.count("Word"), 8);
    EXPECT_EQ(listener.told("Word").front(), "Word 0+3");
    bed.device->absent = false;
    voice.Speak(u"One", asynchronous);
    ASSERT_TRUE(bed.run_to_end(2));
    EXPECT_EQ(bed.device->opened(), 2) << "the next stream tries the device again";
}

TEST_F(VoiceTest, WhenTheDeviceHangsTheWordsGoOnAndTheSoundComesBackWhereTheyAre)
{
    std::u16string text;
    for (int i = 0; i < 1000; ++i)
        text += u"abc ";
    use_format(cd_mono_22);
    voice.Speak(TextSlice(text), asynchronous);
    ASSERT_TRUE(heard_words(3));
    bed.device->absent = true; // and from here on its clock stands
    ASSERT_TRUE(bed.wait_until([&] { return listener.count("AudioOutput") == 1; }));
    EXPECT_GE(listener.count("Word"), 8);
    bed.device->absent = false;
    ASSERT_TRUE(bed.wait_until([&] { return listener.count("AudioOutput") == 2; }));
    EXPECT_EQ(bed.device->opened(), 2);
    ASSERT_TRUE(heard_words(listener.count("Word") + 5));
    EXPECT_EQ(listener.of("AudioOutput")[0].first, 0);
    EXPECT_EQ(listener.of("AudioOutput")[1].first, 1);
    const std::vector<Heard> words = listener.of("Word");
    for (std::size_t i = 0; i < words.size(); ++i)
        ASSERT_EQ(words[i].first, static_cast<int>(i) * 4) << "each word once";
    // The frames that the clock had taken are silent, no more than it takes ahead.
    const std::vector<int> sound = bed.device->sound();
    const auto first = std::find_if(sound.begin(), sound.end(), [](int s) { return s != 0; });
    EXPECT_LE(first - sound.begin(), 22050 / 8);
}

TEST_F(VoiceTest, AnIdleVoiceLetsTheDeviceGo)
{
    voice.Speak(u"One", asynchronous);
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_TRUE(bed.wait_until([&] { return !bed.device->open(); }));
}

TEST_F(VoiceTest, AnEngineThatCannotSpeakEndsTheStreamAndNothingElse)
{
    bed.engine->broken = true;
    voice.Speak(u"One. Two.", asynchronous);
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_THAT(listener.told(""), ElementsAre("StartStream", "EndStream"));
}

TEST_F(VoiceTest, LevelsComeTwentyTimesASecondOnceTheyAreOfInterest)
{
    voice.set_EventInterests(SVEAudioLevel);
    voice.set_Volume(50);
    voice.Speak(u"a b c d e f g h i j", asynchronous);
    ASSERT_TRUE(bed.run_until([&] { return voice.WaitUntilDone(0); }));
    bed.loop.run_posted();
    const std::vector<Heard> levels = listener.of("AudioLevel");
    EXPECT_NEAR(static_cast<double>(levels.size()), 21, 2);
    EXPECT_EQ(levels.front().first, ToneEngine::amplitude * 100 / 32768 / 2);
    EXPECT_EQ(listener.heard.size(), levels.size());
}

TEST_F(VoiceTest, OutputsAndFormatsFollowTheirRules)
{
    const SpeechObjectTokens outputs = voice.GetAudioOutputs("", "");
    ASSERT_EQ(outputs.Count(), 3);
    EXPECT_EQ(outputs.Item(0).description, "Default output");
    EXPECT_EQ(outputs.Item(1).description, "Loudspeaker");
    EXPECT_EQ(outputs.Item(2).description, "Loudspeaker (right)") << "descriptions are unique";
    EXPECT_EQ(voice.AudioOutputStream()->FormatType(), 39);

    voice.AudioOutputStream()->set_FormatType(12);
    voice.Speak(u"a", asynchronous);
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_EQ(bed.device->format().type(), 39) << "set on the stream but not given to the voice";
    voice.set_AudioOutputStream(voice.AudioOutputStream());
    voice.Speak(u"a", asynchronous);
    ASSERT_TRUE(bed.run_to_end(2));
    EXPECT_EQ(bed.device->format().type(), 12);

    voice.set_AllowAudioOutputFormatChangesOnNextSet(false);
    voice.set_AudioOutput(outputs.Item(2));
    EXPECT_EQ(voice.AudioOutputStream()->FormatType(), 12);
    voice.Speak(u"a", asynchronous);
    ASSERT_TRUE(bed.run_to_end(3));
    EXPECT_EQ(bed.device->output(), "right");
    voice.set_AllowAudioOutputFormatChangesOnNextSet(true);
    voice.set_AudioOutput(std::nullopt);
    EXPECT_EQ(voice.AudioOutputStream()->FormatType(), 39);
    SpeechObjectToken unknown;
    unknown.id = "nowhere";
    EXPECT_THROW(voice.set_AudioOutput(unknown), Failure);
}

TEST_F(VoiceTest, RangesAreKept)
{
    for (const int rate : { -11, 11 })
        EXPECT_THROW(voice.set_Rate(rate), Failure);
    for (const int volume : { -1, 101 })
        EXPECT_THROW(voice.set_Volume(volume), Failure);
    for (const int type : { 3, 40 })
        EXPECT_THROW(voice.AudioOutputStream()->set_FormatType(type), Failure);
    voice.set_Rate(-10);
    voice.set_Volume(0);
    EXPECT_EQ(voice.Rate(), -10);
    EXPECT_EQ(voice.Volume(), 0);
}

} // namespace
} // namespace tessavox::voice::test
