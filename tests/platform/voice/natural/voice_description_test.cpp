#include "platform/failure.h"
#include "platform/voice/natural/piper_config.h"
#include "platform/voice/natural/voice_description.h"

#include <gmock/gmock.h>

#include <functional>

namespace tessavox::voice {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string failure_of(const std::function<void()>& step)
{
    try {
        step();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "nothing";
}

const std::string whole
    = "# A voice\n\n"
      "  Name=Polly \r\n"
      "Language = zh-Hant-TW\n"
      "Mode = wave\n"
      "Command = \"/opt/my parrot\" -o {out} --speaker={speaker} \\\"{text}\\\" "
      "\"\" -m{model}\n"
      "Model = polly.bin\n"
      "Speaker = 0\n"
      "Gender = Female\n"
      "Age = Senior\n"
      "Vendor = Birds = us\n"
      "Reference = cmn\n"
      "SampleRate = 22050";

TEST(VoiceDescription, SaysAllThatStandsInIt)
{
    const VoiceDescription voice = parse_voice_description(whole);
    EXPECT_EQ(voice.name, "Polly");
    EXPECT_EQ(voice.language, "zh-Hant-TW");
    EXPECT_EQ(voice.mode, CommandMode::wave);
    EXPECT_THAT(voice.command,
        ElementsAre(
            "/opt/my parrot", "-o", "{out}", "--speaker={speaker}", "\"{text}\"", "", "-m{model}"));
    EXPECT_EQ(voice.model, "polly.bin");
    EXPECT_EQ(voice.speaker, 0);
    EXPECT_EQ(voice.gender, "Female");
    EXPECT_EQ(voice.age, "Senior");
    EXPECT_EQ(voice.vendor, "Birds = us");
    EXPECT_EQ(voice.reference, "cmn");
    EXPECT_EQ(voice.sample_rate, 22050);
}

TEST(VoiceDescription, ThatIsWrongSaysWhatIsAndWhere)
{
    const struct {
        std::string text; // after the three lines that every voice has, or instead of them
        const char* message;
    } rows[] = {
        { "Command = a {out}\nColour = green", "line 5: no key is called \"Colour\"" },
        { "Command = a {out}\nName = Polly", "line 5: Name stands here a second time" },
        { "Command", "line 4: no \"=\"" },
        { "Command = ", "line 4: Command is empty" },
        { "Command = a \"{out}", "line 4: a quote is left open" },
        { "Command = \"\" {out}", "line 4: the program has no name" },
        { "Command = {model} {out}", "line 4: the program itself" },
        { "Command = a {out} {file}", "line 4: \"{file}\" is none of" },
        { "Command = a {out} {text", "line 4: \"{text\" is none of" },
        { "Command = a", "no {out} in the command of mode wave" },
        { "Command = a {out} {dir}", "no place for {dir} in the command of mode wave" },
        { "Command = a {out} {model}", "Model is missing" },
        { "Command = a {out} {speaker}", "Speaker is missing" },
        { "Vendor = me", "Command is missing" },
        { "Gender = female", "line 4: \"female\" is none of Male, Female, Neutral" },
        { "Speaker = -1", "line 4: \"-1\" is no number" },
        { "SampleRate = 44.1", "line 4: \"44.1\" is no number from 8000 to 48000" },
        { std::string("Vendor = a\0b", 12), "line 4: a control character" },
        { "Vendor = \xC3", "is no UTF-8 text" },
        { std::string(70'000, '#'), "longer than 65536 bytes" },
        { "Command = a {out}" + std::string(300, ' ') +
                [] {
                    std::string many;
                    for (int count = 0; count < 200; ++count)
                        many += " b";
                    return many;
                }(),
            "line 4: more than 100 arguments" },
    };
    for (const auto& row : rows)
        EXPECT_THAT(failure_of([&] {
            parse_voice_description("Name = A\nLanguage = en\nMode = wave\n" + row.text);
        }),
            HasSubstr(row.message));

    for (const char* language :
        { "e", "english", "en_US", "en-", "en-a-", "en--us", "en-toolongtag", "1n" })
        EXPECT_THAT(
            failure_of([&] { parse_voice_description("Language = " + std::string(language)); }),
            HasSubstr("is no language"))
            << language;
    EXPECT_EQ(failure_of([] { parse_voice_description(""); }), "Name is missing");
    EXPECT_THAT(failure_of([] { parse_voice_description("Mode = pipe"); }), HasSubstr("none of"));
}

TEST(VoiceDescription, OfAProgramThatKeepsRunningNeedsAPlaceForItsFilesOnly)
{
    const std::string start = "Name = A\nLanguage = en\n";
    const auto result = [&](const std::string& rest) {
        return failure_of([&] { parse_voice_description(start + rest); });
    };
    EXPECT_EQ(result("Mode = directory\nCommand = a {dir}"), "nothing");
    EXPECT_THAT(result("Mode = directory\nCommand = a {dir} {text}"), HasSubstr("no place for"));
    EXPECT_THAT(result("Mode = directory\nCommand = a"), HasSubstr("no {dir}"));
    EXPECT_EQ(result("Mode = frames\nCommand = a"), "nothing");
    EXPECT_THAT(result("Mode = frames\nCommand = a {out}"), HasSubstr("no place for {out}"));
}

std::vector<std::string> speakers_of(const std::string& members)
{
    std::vector<std::string> names;
    for (const PiperSpeaker& speaker :
        parse_piper_config(R"({"audio":{"sample_rate":22050},)" + members + "}").speakers)
        names.push_back(std::to_string(speaker.number) + speaker.name);
    return names;
}

TEST(PiperConfig, ListsItsFirstSpeakersByNumber)
{
    EXPECT_THAT(speakers_of(R"("num_speakers":1,"speaker_id_map":{"a":0})"), ElementsAre("0"));
    EXPECT_THAT(speakers_of(R"("num_speakers":3,"speaker_id_map":{"a":2,"b":0,"c":1})"),
        ElementsAre("0b", "1c", "2a"));
    EXPECT_THAT(speakers_of(R"("num_speakers":2,"speaker_id_map":{"a":7,"b":-1,"c":"0","d e":1})"),
        ElementsAre("01", "12"));
    EXPECT_THAT(
        speakers_of(R"("num_speakers":2,"speaker_id_map":{"a":1,"b":1})"), ElementsAre("1a"));
    EXPECT_THAT(speakers_of(R"("num_speakers":90000)"),
        ElementsAre("01", "12", "23", "34", "45", "56", "67", "78"));
    EXPECT_THAT(speakers_of(R"("num_speakers":"many","espeak":[])"), ElementsAre("0"));
}

TEST(PiperConfig, WithoutASampleRateIsNone)
{
    EXPECT_EQ(parse_piper_config(R"({"audio":{"sample_rate":16000},"espeak":{"voice":"de"}})")
                  .espeak_voice,
        "de");
    for (const char* json :
        { "", "{", "[]", "{}", R"({"audio":5})", R"({"audio":{}})",
            R"({"audio":{"sample_rate":"22050"}})", R"({"audio":{"sample_rate":22050.5}})",
            R"({"audio":{"sample_rate":99999999999999999999}})",
            R"({"audio":{"sample_rate":18446744073709551615}})", R"({"audio":{"sample_rate":1}})" })
        EXPECT_THROW(parse_piper_config(json), Failure) << json;
    EXPECT_THROW(parse_piper_config(std::string(1'000'000, '[')), Failure);
}

} // namespace
} // namespace tessavox::voice
