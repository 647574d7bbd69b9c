// The aligner on real sounds whose word times are known, and on any others.
#include "platform/failure.h"
#include "platform/voice/alignment/aligner.h"
#include "platform/voice/engines/espeak_reference.h"
#include "platform/voice/engines/voice_catalog.h"

#include "tests/platform/voice/engines/made_utterance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>

namespace tessavox::voice {
namespace {

constexpr std::u16string_view sentences[] = {
    u"The old lighthouse keeper climbed the winding stairs every evening to light the lamp.",
    u"In the middle of the night, a dog began to bark on the other side of the river.",
    u"It's well known that ships don't sail against the tide without good reason.",
    u"Which of these colours do you like best: green, orange or purple?",
};

Rendering spoken_by(std::string_view voice, std::u16string_view text)
{
    static const auto catalog = make_installed_catalog();
    const std::atomic<bool> cancelled{ false };
    return catalog->render(
        catalog->find(std::string(voice)), 0, tests::utterance_of(text), cancelled);
}

ReferenceSpeech reference_of(std::u16string_view text)
{
    return espeak_reference(spoken_by("espeak:gmw/en-US", text));
}

TEST(Aligner, PutsTheWordMarksWhereTheWordsAre)
{
    for (const auto& [voice, most_mean_ms] :
        { std::pair("flite:kal16", 14), { "flite:slt", 19 } }) {
        Aligner aligner;
        double sum = 0, count = 0;
        for (const std::u16string_view text : sentences) {
            const Rendering spoken = spoken_by(voice, text);
            const auto marks
                = aligner.align(spoken.samples, spoken.sample_rate, reference_of(text));
            ASSERT_EQ(marks.words.size(), spoken.words.size());
            for (std::size_t word = 0; word < marks.words.size(); ++word, ++count)
                sum += 1000.0 / spoken.sample_rate
                    * std::fabs(static_cast<double>(marks.words[word])
                        - static_cast<double>(spoken.words[word].frame));
        }
        EXPECT_LT(sum / count, most_mean_ms) << voice;
    }
}

void expect_whole_marks(Aligner& aligner, const std::vector<std::int16_t>& target, int sample_rate,
    const ReferenceSpeech& reference)
{
    const AlignedMarks marks = aligner.align(target, sample_rate, reference);
    ASSERT_EQ(marks.words.size(), reference.words.size());
    EXPECT_TRUE(std::ranges::is_sorted(marks.words));
    EXPECT_TRUE(marks.words.empty() || marks.words.back() <= target.size());
    std::uint64_t end = 0;
    for (const AlignedPhone& phone : marks.phones) {
        EXPECT_EQ(phone.frame, end);
        EXPECT_GT(phone.frames, 0U);
        end += phone.frames;
    }
    EXPECT_EQ(end, target.size());
}

TEST(Aligner, GivesEachWordARisingMarkInWhateverSound)
{
    const Rendering speech = spoken_by("flite:kal16", sentences[0]);
    const std::vector<std::int16_t> targets[] = { {}, { 1 }, std::vector<std::int16_t>(16000),
        { speech.samples.begin() + 4000, speech.samples.begin() + 4100 }, speech.samples,
        std::vector<std::int16_t>(speech.samples.size(), -32768) };

    ReferenceSpeech whole = reference_of(sentences[0]);
    ReferenceSpeech no_words = whole, no_phones = whole, empty, silent = whole, misplaced = whole;
    no_words.words.clear();
    no_phones.phones.clear();
    empty.sample_rate = whole.sample_rate;
    empty.words = whole.words;
    std::ranges::fill(silent.samples, std::int16_t{ 0 });
    misplaced.words.assign(30000, whole.samples.size() + 100000);
    for (ReferencePhone& phone : misplaced.phones)
        phone.frames = 0;

    Aligner aligner;
    for (const auto& target : targets)
        for (const auto& reference : { whole, no_words, no_phones, empty, silent, misplaced })
            expect_whole_marks(aligner, target, speech.sample_rate, reference);
    for (const int rate : { 0, -1, 3999, 2'000'000'000 })
        EXPECT_THROW(aligner.align(speech.samples, rate, whole), Failure) << rate;
}

} // namespace
} // namespace tessavox::voice
