#include "platform/failure.h"
#include "platform/voice/natural/piper_config.h"
#include "platform/voice/natural/voice_description.h"

#include <gmock/gmock.h>

namespace tessavox::voice {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(VoiceDescription, SaysAllThatStandsInIt)
{
    const VoiceDescription voice = parse_voice_description(
        "# A voice\n\n  Name=Polly \r\nLanguage = zh-Hant-TW\nMode = wave\n"
        "Command = \"/opt/my parrot\" -o {out} --to={speaker} \\\"{text}\\\" \"\" -m{model}\n"
        "Model = polly.bin\nSpeaker = 0\nGender = Female\nAge = Senior\nVendor = Birds = us\n"
        "Reference = cmn\nSampleRate = 22050\nEncoding = ISO-8859-2\n"
        "Reads = \"~/my models\" birds");
    EXPECT_EQ(voice.mode, CommandMode::wave);
    EXPECT_THAT(voice.command,
        ElementsAre(
            "/opt/my parrot", "-o", "{out}", "--to={speaker}", "\"{text}\"", "", "-m{model}"));
    EXPECT_EQ(voice.speaker, 0);
    EXPECT_EQ(voice.sample_rate, 22050);
    EXPECT_THAT(std::vector({ voice.name, voice.language, voice.model.string(), voice.gender,
                    voice.age, voice.vendor, voice.reference, voice.encoding }),
        ElementsAre("Polly", "zh-Hant-TW", "polly.bin", "Female", "Senior", "Birds = us", "cmn",
            "ISO-8859-2"));
    EXPECT_THAT(voice.reads, ElementsAre("~/my models", "birds"));
}

std::string failure_of(const std::string& description)
{
    try {
        parse_voice_description(description);
        return "nothing";
    } catch (const Failure& failure) {
        return failure.what();
    }
}

TEST(VoiceDescription, ThatIsWrongSaysWhatIsAndWhere)
{
    const struct {
        const char* mode;
        std::string rest;
        const char* message;
    } rows[] = {
        { "wave", "Command = a {out}\nColour = green", "line 5: no key is called \"Colour\"" },
        { "wave", "Command = a {out}\nName = Polly", "line 5: Name stands here a second time" },
        { "wave", "Command = a \"{out}", "line 4: a quote is left open" },
        { "wave", "Command = a", "no {out} in the command of mode wave" },
        { "wave", "Command = a {out} {model}", "Model is missing" },
        { "wave", "Gender = female", "line 4: \"female\" is none of Male, Female, Neutral" },
        { "wave", "SampleRate = 44.1", "line 4: \"44.1\" is no number from 8000 to 48000" },
        { "directory", "Command = a {dir}", "nothing" },
        { "directory", "Command = a {dir} {text}", "no place for {text}" },
        { "frames", "Command = a", "nothing" },
        { "frames", "Command = a {out}", "no place for {out}" },
    };
    for (const auto& row : rows)
        EXPECT_THAT(failure_of("Name = A\nLanguage = en\nMode = " + std::string(row.mode) + "\n"
                        + row.rest),
            HasSubstr(row.message));
    EXPECT_EQ(failure_of(""), "Name is missing");
}

TEST(PiperConfig, ListsItsFirstSpeakersByNumber)
{
    const std::pair<std::string, const char*> rows[] = {
        { R"("num_speakers":1,"speaker_id_map":{"a":0})", "0 " },
        { R"("num_speakers":3,"speaker_id_map":{"a":2,"b":0,"c":1})", "0b 1c 2a " },
        { R"("num_speakers":2,"speaker_id_map":{"a":7,"b":-1,"c":"0","d e":1})", "01 12 " },
        { R"("num_speakers":2,"speaker_id_map":{"a":1,"b":1})", "1a " },
        { R"("num_speakers":90000)", "01 12 23 34 45 56 67 78 " },
        { R"("num_speakers":"many","espeak":[])", "0 " },
    };
    for (const auto& [members, speakers] : rows) {
        std::string told;
        const auto config
            = parse_piper_config(R"({"audio":{"sample_rate":22050},)" + members + "}");
        for (const PiperSpeaker& speaker : config.speakers)
            told += std::to_string(speaker.number) + speaker.name + " ";
        EXPECT_EQ(told, speakers);
    }
    for (const std::string none : { "", "[]", "{}", R"({"audio":{"sample_rate":1}})" })
        EXPECT_THROW(parse_piper_config(none), Failure) << none;
}

} // namespace
} // namespace tessavox::voice
