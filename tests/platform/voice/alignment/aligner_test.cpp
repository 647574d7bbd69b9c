// The aligner on real sounds whose word times are known.
#include "platform/failure.h"
#include "platform/voice/alignment/aligner.h"
#include "platform/voice/engines/espeak_reference.h"
#include "platform/voice/engines/voice_catalog.h"

#include "tests/platform/voice/engines/made_utterance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <map>
#include <numeric>

namespace tessavox::voice {
namespace {

constexpr std::u16string_view sentences[] = {
    u"The old lighthouse keeper climbed the winding stairs every evening to light the lamp.",
    u"In the middle of the night, a dog began to bark on the other side of the river.",
    u"He put the book on the table, took off his glasses, and looked at me for a long time.",
    u"It's well known that ships don't sail against the tide without good reason.",
    u"A computer can add a million numbers before you have read this sentence.",
    u"Which of these colours do you like best: green, orange or purple?",
    u"The price of bread has risen twice since the beginning of the year.",
    u"Please turn off the light and close the door before you leave the room.",
};

// Each sound is made once.
const Rendering& spoken_by(std::string_view voice, std::u16string_view text)
{
    static const auto catalog = make_installed_catalog();
    static std::map<std::pair<std::string, std::u16string>, Rendering> sounds;
    const std::atomic<bool> cancelled{ false };
    const auto [sound, is_new] = sounds.try_emplace({ std::string(voice), std::u16string(text) });
    if (is_new)
        sound->second = catalog->render(
            catalog->find(std::string(voice)), 0, tests::utterance_of(text), cancelled);
    return sound->second;
}

ReferenceSpeech reference_of(std::u16string_view text)
{
    return espeak_reference(spoken_by("espeak:gmw/en-US", text));
}

/// What happens to a sound on its way from its engine to the aligner; its word marks with it.
using Change = void (*)(Rendering& spoken);

void leave_alone(Rendering&) { }

/// Puts silence in before two words; what comes after it moves along.
void pause_falsely(Rendering& spoken)
{
    const auto frames = static_cast<std::uint64_t>(spoken.sample_rate / 2);
    for (const std::size_t paused : { 2U, 5U }) {
        const auto place = static_cast<std::ptrdiff_t>(spoken.words[paused].frame);
        spoken.samples.insert(spoken.samples.begin() + place, frames, std::int16_t{ 0 });
        for (std::size_t word = paused; word < spoken.words.size(); ++word)
            spoken.words[word].frame += frames;
    }
}

TEST(Aligner, PutsTheWordMarksWhereTheWordsAre)
{
    const struct {
        const char* voice;
        Change change;
        double most_mean_ms;
        double most_p95_ms;
    } rows[] = {
        { "flite:kal16", leave_alone, 14, 42 },
        { "flite:slt", leave_alone, 17, 52 },
        { "flite:slt", pause_falsely, 18, 55 },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        Aligner aligner;
        std::vector<double> errors;
        for (const std::u16string_view text : sentences) {
            Rendering spoken = spoken_by(row.voice, text);
            row.change(spoken);
            const AlignedMarks marks
                = aligner.align(spoken.samples, spoken.sample_rate, reference_of(text));
            ASSERT_EQ(marks.words.size(), spoken.words.size());
            for (std::size_t word = 0; word < marks.words.size(); ++word)
                errors.push_back(1000.0 / spoken.sample_rate
                    * std::fabs(static_cast<double>(marks.words[word])
                        - static_cast<double>(spoken.words[word].frame)));
        }
        std::ranges::sort(errors);
        EXPECT_LT(std::reduce(errors.begin(), errors.end()) / static_cast<double>(errors.size()),
            row.most_mean_ms);
        EXPECT_LT(errors[errors.size() * 95 / 100], row.most_p95_ms);
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
    const Rendering& speech = spoken_by("flite:kal16", sentences[0]);
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
