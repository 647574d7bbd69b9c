// What engines are given to read, and how their reports become marks.
#include "made_utterance.h"

#include "platform/text.h"
#include "platform/voice/engines/ascii_text.h"
#include "platform/voice/engines/espeak_marks.h"
#include "platform/voice/engines/espeak_text.h"
#include "platform/voice/engines/word_timing.h"

#include <gtest/gtest.h>

namespace tessavox::voice {

using namespace tests;

namespace {

/// An engine that knows the names of no signs but the hash.
EspeakText text_of(const Utterance& utterance, bool english)
{
    return espeak_text(utterance, english, [](const std::string& sign) { return sign != "#"; });
}

/// The pieces in brackets, and after them the tokens that are silent.
std::string described(const EspeakText& text)
{
    std::string result;
    for (const EspeakPiece& piece : text.pieces)
        if (const auto* words = std::get_if<SpokenText>(&piece))
            result += "[" + words->utf8 + "]";
        else
            result += "<" + std::to_string(std::get<NamedPiece>(piece).characters.size()) + ">";
    for (std::size_t token = 0; token < text.silent.size(); ++token)
        result += text.silent[token] ? " -" + std::to_string(token) : "";
    return result;
}

std::vector<std::uint64_t> frames_of(const std::vector<WordMark>& marks)
{
    std::vector<std::uint64_t> frames;
    for (const WordMark& mark : marks)
        frames.push_back(mark.frame);
    return frames;
}

} // namespace

TEST(SpokenText, IsWhatTheLibraryReadsAsItIsMeant)
{
    const struct {
        std::u16string text;
        const char* english;
        const char* german = english;
    } rows[] = {
        // What it could take for a command, and what it can't bear.
        { u"plain [[text]] <b>", "[plain [[text]] <b>]" },
        { std::u16string(u"a\u0001b\0c\x7F"
                         u"d",
              7),
            "[a b c d]" },
        { u"a\xD800"
          u"b\xDC00",
            "[a b ]" },
        { u"\uE001x\uFDD0 \uE001 b", "[ x    b] -1" },
        { u"\t \n", "" },
        // Tamil digits are read as digits; a letter that Tamil doesn't have isn't.
        { u"\u0BE7\u0BE8 \u0B80", "[12  ] -1" },
        // Words that change their script are two words, but not those with an apostrophe.
        { u"aλ п'ять don't", "[a λ п'ять don't]" },
        // It would take these for one word.
        { u"東京|へ", "[東京 へ]" },
        { u"วัน|นี้", "[วัน นี้]" },
        { u"x|=|1", "[x equals 1]", "[x 1] -1" },
        { u"a|b", "[ab]" },
        // Signs that it passes over are named.
        { u"a # b", "[a # b]" }, // has its name in the library
        { u"a < b", "[a  less than  b]", "[a ]<1>[ b]" },
        { u"20 ℃ x", "[20  degree celsius  x]", "[20   x] -1" },
        { u"🇩🇪 x", "[ D E  x]", "[  x] -0" },
        { u"☐️ ☐☐", "[ ballot box   ballot box ]", " -0 -1" },
        { u"½ x", "[ vulgar fraction one half  x]", "[  x] -0" },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(described(text_of(parted(row.text), true)), row.english);
        EXPECT_EQ(described(text_of(parted(row.text), false)), row.german);
    }
}

TEST(SpokenText, AsksTheLibraryOnlyAboutWhatItCanBear)
{
    const Utterance utterance = utterance_of(u"\u09F2 \u2801 \u24DC ½");
    espeak_text(utterance, true, [](const std::string& sign) {
        EXPECT_TRUE(sign == " " || sign == "½") << sign;
        return false;
    });
    EXPECT_EQ(safe_utf8(u"\u09F2λ'λ"), " λ ' λ");
}

TEST(SpokenText, SpellsAndNamesMarks)
{
    const Utterance spelled = utterance_of(u"a, bé", { .spell = true });
    EXPECT_EQ(described(text_of(spelled, true)), "<1><1><1><1>");
    EXPECT_EQ(ascii_text(spelled).utf8, " A  comma   B  E");
    const Utterance marked = utterance_of(u"Well -- done !", { .speak_punctuation = true });
    EXPECT_EQ(described(text_of(marked, true)), "[Well ]<2>[ done ]<1>");
    EXPECT_EQ(ascii_text(marked).utf8, "Well  dash dash  done  exclamation mark");
}

TEST(SpokenText, BecomesAsciiWithEveryByteAtItsToken)
{
    const SpokenText text = ascii_text(utterance_of(u"Größe “naïve” Москва ☃"));
    EXPECT_EQ(text.utf8, "Grosse \"naive\" Moskva  snowman ");
    ASSERT_EQ(text.tokens.size(), text.utf8.size());
    EXPECT_EQ(text.tokens[text.utf8.find("naive")], 1U);
    EXPECT_EQ(text.tokens[text.utf8.find("Moskva")], 2U);
    EXPECT_EQ(text.tokens[text.utf8.find("snowman")], 3U);
    EXPECT_EQ(ascii_text(utterance_of(u"5 < 6 § 7")).utf8, "5  less than  6  section sign  7");
    EXPECT_EQ(silent_in_ascii(utterance_of(u"a < \U0001F3FD b")),
        (std::vector<bool>{ false, false, true, false }));
}

TEST(SpokenText, FollowsTheContextsThatItKnows)
{
    using Text = const char*;
    const std::tuple<Text, std::u16string, Text, Text> cases[] = {
        { "date_mdy", u"12/25/2003", "December 25 2003", "12/25/2003" },
        { "date_dmy", u"25.12.2003", "25 December 2003", "25.12.2003" },
        { "date_mdy", u"13/25/2003", "13/25/2003", "13/25/2003" },
        { "phone_number", u"555-12 ü7", "5 5 5 -1 2  ü7", "5 5 5 -1 2  ü7" },
        { "address", u"12 Main", "12 Main", "12 Main" },
    };
    for (const auto& [context, text, english, other] : cases)
        for (const bool in_english : { true, false }) {
            Utterance utterance = utterance_of(text);
            utterance.contexts = { { 0, static_cast<std::uint32_t>(text.size()), context } };
            const auto pieces = text_of(utterance, in_english).pieces;
            ASSERT_EQ(pieces.size(), 1U);
            const auto& words = std::get<SpokenText>(pieces[0]);
            EXPECT_EQ(words.utf8, in_english ? english : other);
            EXPECT_EQ(words.tokens.size(), to_utf16(words.utf8).size());
        }
}

TEST(WordTiming, SharesOutWhatTheEngineDoesNotTell)
{
    const Utterance utterance = utterance_of(u"aa bbbb cc dd");
    const std::vector<PhoneMark> phones{ { 100, 100, 1, 1, 0 }, { 200, 200, 1, 1, 0 },
        { 400, 100, 1, 1, 0 }, { 500, 300, 0, 0, 0 }, { 800, 200, 1, 1, 0 } };
    using Frames = std::vector<std::uint64_t>;
    const std::pair<std::vector<HeardToken>, Frames> cases[] = {
        { { { 0, 100 }, { 1, 200 }, { 2, 400 }, { 3, 800 } }, { 100, 200, 400, 800 } },
        // Reports out of order or far ahead don't hide the others.
        { { { 0, 100 }, { 3, 150 }, { 1, 200 }, { 2, 400 }, { 3, 800 } }, { 100, 200, 400, 800 } },
        { { { 0, 100 }, { 1, 200 }, { 0, 300 }, { 2, 400 }, { 2, 500 }, { 3, 800 } },
            { 100, 200, 400, 800 } },
        // Tokens between two known ones begin at phones, and not in the pause.
        { { { 0, 100 }, { 3, 800 } }, { 100, 200, 400, 800 } },
        // The first begins with the first sound.
        { { { 1, 200 }, { 2, 400 }, { 3, 800 } }, { 100, 200, 400, 800 } },
    };
    for (const auto& [heard, frames] : cases)
        EXPECT_EQ(frames_of(complete_marks(utterance.tokens, heard, phones, 1000)), frames);
    EXPECT_EQ(
        frames_of(complete_marks(utterance.tokens, {}, {}, 1000)), (Frames{ 0, 200, 600, 800 }));
    EXPECT_EQ(frames_of(complete_marks(utterance.tokens, {}, {}, 0)), (Frames{ 0, 0, 0, 0 }));
    EXPECT_TRUE(complete_marks({}, {}, phones, 1000).empty());
}

TEST(EspeakMarks, AreTakenFromReportsThatDriftAndMerge)
{
    const struct {
        const char16_t* text;
        std::vector<EspeakSound::Word> words; // position, frame, next phone
        std::vector<std::uint64_t> phones; // frames; all of them sound
        std::vector<std::uint64_t> marks;
    } cases[] = {
        { u"a b", { { 0, 0, 0 }, { 2, 100, 1 } }, { 5, 110 }, { 0, 100 } },
        // Told together with the phone before: begins with its own.
        { u"a b", { { 0, 0, 0 }, { 2, 100, 2 } }, { 5, 100, 130 }, { 0, 130 } },
        // The second word of a sign's name is told at the blank, the third at the next token.
        { u"½ b", { { 0, 0, 0 }, { 1, 60, 1 }, { 2, 100, 2 } }, { 5, 65, 110 }, { 0, 100 } },
        { u"≤ b", { { 0, 0, 0 }, { 1, 60, 1 }, { 2, 80, 2 }, { 2, 120, 3 } }, { 5, 65, 85, 125 },
            { 0, 120 } },
        // A word may be told at the blank before it.
        { u"a b", { { 0, 0, 0 }, { 1, 100, 1 } }, { 5, 110 }, { 0, 100 } },
        // Merged words: each has two phones, the first what is left.
        { u"of the in a", { { 0, 0, 0 }, { 10, 700, 7 } }, { 0, 100, 200, 300, 400, 500, 600, 700 },
            { 0, 300, 500, 700 } },
        { u"of the", { { 0, 0, 0 } }, { 0, 100 }, { 0, 100 } },
    };
    for (const auto& each : cases) {
        const Utterance utterance = utterance_of(each.text);
        SpokenText words;
        std::uint32_t token = 0;
        for (std::size_t at = 0; at < utterance.text.size();) {
            while (token + 1 < utterance.tokens.size() && token_end(utterance, token) <= at)
                ++token;
            words.append(next_harmless(utterance.text, at), token);
        }
        EspeakSound sound;
        sound.words = each.words;
        for (const std::uint64_t frame : each.phones)
            sound.phones.push_back({ "a", frame });
        sound.samples.resize(1000);
        const auto heard = heard_tokens(words, { sound, 0, 0 }, [](std::uint32_t) { return 2; });
        EXPECT_EQ(frames_of(complete_marks(utterance.tokens, heard, {}, 1000)), each.marks)
            << to_utf8(each.text);
    }
}

} // namespace tessavox::voice
