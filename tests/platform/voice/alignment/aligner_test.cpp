// The aligner on sounds of all kinds; the voices that need it are tested for where their words are.
#include "platform/failure.h"
#include "platform/voice/alignment/aligner.h"
#include "platform/voice/engines/espeak_reference.h"
#include "platform/voice/engines/voice_catalog.h"

#include "tests/platform/voice/engines/made_utterance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

namespace tessavox::voice {
namespace {

const std::u16string text
    = u"The old lighthouse keeper climbed the winding stairs every evening to light the lamp.";

Rendering spoken_by(std::string_view voice)
{
    const auto catalog = make_installed_catalog();
    const std::atomic<bool> cancelled{ false };
    return catalog->render(
        catalog->find(std::string(voice)), 0, tests::utterance_of(text), cancelled);
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
    const Rendering speech = spoken_by("flite:kal16");
    const std::vector<std::int16_t> targets[] = { {}, { 1 }, std::vector<std::int16_t>(16000),
        { speech.samples.begin() + 4000, speech.samples.begin() + 4100 }, speech.samples,
        std::vector<std::int16_t>(speech.samples.size(), -32768) };

    ReferenceSpeech whole = espeak_reference(spoken_by("espeak:gmw/en-US"));
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
