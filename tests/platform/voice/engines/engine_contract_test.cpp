// What every engine owes to the rest of the voice, asked of the real ones.
#include "made_utterance.h"

#include "platform/voice/engines/prosody.h"
#include "platform/voice/engines/voice_catalog.h"

#include <gtest/gtest.h>

#include <span>

namespace tessavox::voice {

using namespace tests;

namespace {

struct EngineCase {
    std::string name;
    std::unique_ptr<Engine> (*make)();
    std::string voice;
    double lowest_pitch; // Hz, of a normal sentence
    double highest_pitch;
    std::vector<int> rates;
    std::vector<int> pitches;
};

const std::u16string prose
    = u"Whenever many yellow lemons are rolling down a long lane, we all run along and may win "
      u"one. The old man who lives near the river never knew why.";

constexpr const char16_t* everyday[] = {
    u"She asked whether the letter had arrived, but he only shook his head and went on reading.",
    u"Nobody in the village could remember a winter as long as that one.",
};

/// The fundamental frequency in Hz, by autocorrelation of the whole, so that the loud and
/// voiced parts count most. Looks between `lowest` and `highest`.
double fundamental(
    std::span<const std::int16_t> samples, int sample_rate, double lowest, double highest)
{
    const auto correlation = [&](std::size_t shift) {
        double sum = 0;
        for (std::size_t n = 0; n + shift < samples.size(); ++n)
            sum += static_cast<double>(samples[n]) * samples[n + shift];
        return sum;
    };
    const auto longest = static_cast<std::size_t>(sample_rate / lowest);
    std::pair<double, std::size_t> best;
    for (auto shift = static_cast<std::size_t>(sample_rate / highest); shift <= longest; ++shift)
        best = std::max(best, { correlation(shift), shift });
    return best.second == 0 ? 0 : sample_rate / static_cast<double>(best.second);
}

} // namespace

struct EngineContract : testing::TestWithParam<EngineCase> {
    Rendering speak(const Utterance& utterance, int rate = 0)
    {
        return engine->render({ GetParam().voice, rate, &utterance }, not_cancelled);
    }

    static void expect_complete_marks(const Utterance& utterance, const Rendering& rendering)
    {
        ASSERT_EQ(rendering.words.size(), utterance.tokens.size());
        std::uint64_t before = 0;
        for (std::uint32_t at = 0; at < rendering.words.size(); ++at) {
            EXPECT_EQ(rendering.words[at].token, at);
            EXPECT_GE(rendering.words[at].frame, before) << "token " << at;
            before = rendering.words[at].frame;
        }
        EXPECT_LE(before, rendering.samples.size());
        std::uint64_t end = 0;
        for (const PhoneMark& phone : rendering.phones) {
            EXPECT_GE(phone.frame, end);
            end = phone.frame + phone.frames;
            EXPECT_LE(phone.viseme, 21);
        }
        EXPECT_LE(end, rendering.samples.size());
    }

    const std::atomic<bool> not_cancelled{ false };
    std::unique_ptr<Engine> engine = GetParam().make();
};

// These are asked of the slow voices too.
class EngineProsody : public EngineContract { };

TEST_P(EngineContract, EveryTokenOfAnyTextGetsOneRisingMark)
{
    const auto check = [&](const Utterance& utterance) {
        SCOPED_TRACE(to_utf8(utterance.text.substr(0, 100)));
        const Rendering rendering = speak(utterance, 10);
        expect_complete_marks(utterance, rendering);
        EXPECT_GT(rendering.sample_rate, 0);
    };
    check(utterance_of(u"Well , said he : no !", { .speak_punctuation = true }));
    for (const auto& [text, context, length] :
        { std::tuple(u"12/25/2003 it snowed", "date_mdy", 10U), { u"12/25/2003", "date_mdy", 10U },
            { u"555-1234 ext. 7", "phone_number", 8U } }) {
        Utterance utterance = utterance_of(text);
        utterance.contexts = { { 0, length, context } };
        check(utterance);
    }
    std::u16string dotted;
    for (int n = 0; n < 200; ++n)
        dotted += n % 2 == 0 ? u"a." : u"中.";
    const std::u16string texts[] = { u"Hello world",
        u"In 1984 there were 12,345.67 of them at 3:30 on the 21st.",
        u"A well-known, state-of-the-art thing that I don't and he's n't 'd like.",
        u"one of the best in the world, I am told to be on the way of the",
        u"Grüße aus Köln, naïve façade — “œuvre” ænigma… Ab1,.! ü中\U0001F600",
        u"smile \U0001F600 and \U0001F468\u200D\U0001F469\u200D\U0001F467 end",
        u"你好 世界 and こんにちは 안녕하세요 Здравствуй мир שלום",
        u"tab\tand\nline   and  many     blanks ", u". , ; ! ? - ( ) # * ~ word", u"   ", u"",
        dotted, u"[[h@l'oU]]", u"[[" + std::u16string(780, u'a'),
        u"<speak><audio src=\"/etc/passwd\"/><prosody rate=\"5\">hi", u"&#1; &lt;", u"\u0001100S",
        std::u16string(u"a\0b", 3), u"\xD800 \xDC00 \xDBFF\xDBFF", u"%s%n%d",
        std::u16string(800, u'.'), std::u16string(800, u'\u0301'), std::u16string(400, u'1') };
    for (const std::u16string& text : texts) {
        check(utterance_of(text));
        const std::size_t most = 30;
        check(utterance_of(text.substr(0, most), { .spell = true }));
    }
}

TEST_P(EngineContract, EveryWordOfPlainProseStartsAtItsOwnTime)
{
    const Utterance utterance = utterance_of(prose);
    const Rendering rendering = speak(utterance);
    expect_complete_marks(utterance, rendering);
    const auto shortest = static_cast<std::uint64_t>(rendering.sample_rate / 100);
    for (std::size_t at = 1; at < rendering.words.size(); ++at)
        EXPECT_GE(rendering.words[at].frame, rendering.words[at - 1].frame + shortest);
    EXPECT_LT(rendering.words.back().frame, rendering.samples.size());
    EXPECT_LT(rendering.words.front().frame, static_cast<std::uint64_t>(rendering.sample_rate / 4));
}

TEST_P(EngineProsody, EachRateScalesTheLengthByItsFactor)
{
    const auto length = [&](int rate) {
        double frames = 0;
        for (const char16_t* text : everyday) {
            const Utterance utterance = utterance_of(text);
            const Rendering rendering = speak(utterance, rate);
            expect_complete_marks(utterance, rendering);
            frames += static_cast<double>(rendering.samples.size());
        }
        return frames;
    };
    const double normal = length(0);
    for (const int rate : GetParam().rates)
        EXPECT_NEAR(normal / length(rate) / speed_factor(rate), 1, 0.03) << "rate " << rate;
}

TEST_P(EngineProsody, EachPitchScalesTheMelodyByItsFactor)
{
    const auto measure = [&](int pitch) {
        const Rendering rendering = speak(utterance_of(prose, { .pitch = pitch }), -3);
        return fundamental(rendering.samples, rendering.sample_rate,
            GetParam().lowest_pitch * pitch_factor(pitch),
            GetParam().highest_pitch * pitch_factor(pitch));
    };
    const double normal = measure(0);
    ASSERT_GT(normal, 0);
    for (const int pitch : GetParam().pitches)
        // The melody moves the measure's peak a little.
        EXPECT_NEAR(measure(pitch) / normal / pitch_factor(pitch), 1, 0.08) << "pitch " << pitch;
}

TEST_P(EngineContract, AnUtteranceLeavesNoTraceInTheNext)
{
    const Utterance plain = utterance_of(prose);
    const auto expected = static_cast<double>(speak(plain).samples.size());
    speak(utterance_of(u"Loud and high", { .pitch = 10, .emphasis = true }), 10);
    speak(utterance_of(u"a,b", { .spell = true }));
    speak(utterance_of(u"\u0001"
                       u"9S \u0001"
                       u"5P [[ <prosody rate=\"fast\"> <audio src=\"x\">"));
    EXPECT_NEAR(static_cast<double>(speak(plain).samples.size()), expected, expected / 100);
}

TEST_P(EngineContract, EmphasisIsHeard)
{
    const Rendering plain = speak(utterance_of(u"wonderful"));
    const Rendering stressed = speak(utterance_of(u"wonderful", { .emphasis = true }));
    EXPECT_GT(stressed.samples.size(), plain.samples.size());
    EXPECT_GT(std::ranges::max(stressed.samples), std::ranges::max(plain.samples) * 1.05);
    ASSERT_FALSE(stressed.phones.empty());
    EXPECT_TRUE(std::ranges::any_of(
        stressed.phones, [](const PhoneMark& phone) { return (phone.feature & 2) != 0; }));
}

TEST_P(EngineContract, SymbolsReplaceTheText)
{
    const auto visemes = [&](const Utterance& utterance) {
        std::vector<int> result;
        for (const PhoneMark& phone : speak(utterance).phones)
            if (phone.viseme != 0)
                result.push_back(phone.viseme);
        return result;
    };
    Utterance replaced = utterance_of(u"anything");
    replaced.pronunciation = { "f ih 1 sh" };
    EXPECT_EQ(visemes(replaced), (std::vector<int>{ 18, 6, 16 }));
    const Rendering rendering = speak(replaced);
    expect_complete_marks(replaced, rendering);

    const auto spoken = visemes(utterance_of(u"anything"));
    for (const std::string& bad : { std::string("f qq"), std::string("]] [["),
             std::string(100'000, '['), std::string("1"), std::string() }) {
        replaced.pronunciation = { bad };
        EXPECT_EQ(visemes(replaced), spoken) << bad.substr(0, 20);
    }
}

TEST_P(EngineProsody, CancelledItStopsAtOnceAndSpeaksOnAfterwards)
{
    const Utterance utterance = utterance_of(prose);
    const std::size_t whole = speak(utterance).samples.size();
    const std::atomic<bool> cancelled{ true };
    const Rendering cut = engine->render({ GetParam().voice, 0, &utterance }, cancelled);
    EXPECT_LT(cut.samples.size(), whole / 2);
    EXPECT_NEAR(static_cast<double>(speak(utterance).samples.size()), static_cast<double>(whole),
        static_cast<double>(whole) / 200);
}

// From its mark to the end the last word takes as long as it does by itself.
TEST(Espeak, MarksTheLastWordWhereItBegins)
{
    const auto engine = make_espeak_engine();
    const std::atomic<bool> not_cancelled{ false };
    for (const auto& [voice, text] :
        { std::pair("espeak:gmw/en-US", u"one ½ two"), { "espeak:gmw/en-US", u"one ≤ two" },
            { "espeak:gmw/en-US", u"most of the" }, { "espeak:gmw/de", u"eins ≤ zwei" },
            { "espeak:jpx/ja", u"私|は|東京|へ|行き" }, { "espeak:tai/th", u"วัน|นี้|อากาศ|ดี" } }) {
        const auto seconds_from_last = [&, voice = voice](const Utterance& utterance) {
            const Rendering rendering = engine->render({ voice, 0, &utterance }, not_cancelled);
            return static_cast<double>(rendering.samples.size() - rendering.words.back().frame)
                / rendering.sample_rate;
        };
        const Utterance whole = parted(text);
        const Utterance alone = utterance_of(whole.text.substr(whole.tokens.back().begin));
        EXPECT_NEAR(seconds_from_last(whole), seconds_from_last(alone), 0.1) << to_utf8(text);
    }
}

namespace {

const EngineCase espeak{ "Espeak", make_espeak_engine, "espeak:gmw/en-US", 70, 180,
    { -10, -6, -3, 3, 6, 10 }, { -10, -5, 5, 10 } };
const EngineCase diphones{ "Kal", make_flite_engine, "flite:kal16", 60, 180, { -10, -5, 5, 10 },
    { -10, 10 } };
const EngineCase statistics{ "Slt", make_flite_engine, "flite:slt", 110, 260, { 10 }, { 10 } };
const EngineCase shifted{ "Rms", make_flite_engine, "flite:rms", 60, 180, { -5, 10 }, { -10 } };

std::string name_of(const testing::TestParamInfo<EngineCase>& info)
{
    return info.param.name;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Real, EngineContract, testing::Values(espeak, diphones), name_of);
INSTANTIATE_TEST_SUITE_P(
    Real, EngineProsody, testing::Values(espeak, diphones, statistics, shifted), name_of);

} // namespace tessavox::voice
