#include "platform/failure.h"
#include "platform/voice/natural/natural_voices.h"
#include "platform/voice/natural/voice_description.h"
#include "tests/platform/files/test_folder.h"

#include <gmock/gmock.h>

namespace tessavox::voice {
namespace {

using testing::ElementsAre;

struct NaturalVoiceFolders : testing::Test {
    NaturalVoiceFolders()
    {
        root.write("bin/parrot", "");
        fs::permissions(root / "bin/parrot", fs::perms::owner_all);
    }
    void describe(const std::string& file, const std::string& name, const std::string& more = "",
        const std::string& program = "parrot")
    {
        root.write(file,
            "Name=" + name + "\nLanguage=en\nMode=wave\nCommand=" + program + " {out}\n" + more);
    }
    void add_model(const std::string& file, const std::string& members = "")
    {
        root.write(file, "weights");
        root.write(file + ".json",
            R"({"audio":{"sample_rate":22050},"espeak":{"voice":"en-us"})" + members + "}");
    }
    NaturalVoices found() const
    {
        return find_natural_voices(folders,
            { "relative:/nowhere:" + (root / "bin").string() + ":/nowhere", "/usr/bin/piper" });
    }
    static std::vector<std::string> named(const NaturalVoices& found)
    {
        std::vector<std::string> names;
        for (const NaturalVoice& voice : found.voices)
            names.push_back(voice.id + " " + voice.description.name);
        return names;
    }

    const TestFolder root;
    const VoiceFolders folders{ { root / "own", root / "shared" },
        { root / "own-piper", root / "shared-piper" } };
};

TEST_F(NaturalVoiceFolders, GiveTheUsersOwnVoiceBeforeASharedOneOfItsName)
{
    describe("own/b.voice", "Own B");
    describe("own/a.voice", "Own A", "Model=deep/a.bin");
    root.write("own/deep/a.bin", "");
    describe("shared/b.voice", "Shared B");
    describe("shared/c.voice", "Shared C", "", root / "bin/parrot");
    root.write("own/readme.txt", "no voice");
    const NaturalVoices voices = found(); // the folders of models aren't there
    EXPECT_THAT(named(voices), ElementsAre("voice:a Own A", "voice:b Own B", "voice:c Shared C"));
    EXPECT_EQ(voices.voices[0].description.command.front(), root / "bin/parrot");
    EXPECT_EQ(voices.voices[0].description.model, root / "own/deep/a.bin");
    EXPECT_TRUE(voices.unfit.empty());
}

TEST_F(NaturalVoiceFolders, GivePiperModelsAVoiceASpeaker)
{
    add_model("own-piper/en/en_US/lessac/medium/en_US-lessac-medium.onnx");
    add_model("own-piper/en_GB-northern_english_male-x_low.onnx");
    add_model("shared-piper/en_US-lessac-medium.onnx");
    add_model("shared-piper/my_own-voice.onnx");
    add_model("shared-piper/de_DE-duo-low.onnx",
        R"(,"num_speakers":2,"speaker_id_map":{"anna":1,"otto":0})");
    const NaturalVoices voices = found();
    EXPECT_THAT(named(voices),
        ElementsAre("piper:en_US-lessac-medium Lessac medium",
            "piper:en_GB-northern_english_male-x_low Northern English Male x_low",
            "piper:de_DE-duo-low:otto Duo otto low", "piper:de_DE-duo-low:anna Duo anna low",
            "piper:my_own-voice My Own-voice"));
    const VoiceDescription& anna = voices.voices[3].description;
    EXPECT_EQ(anna.language, "de-DE");
    EXPECT_EQ(anna.speaker, 1);
    EXPECT_EQ(anna.model, root / "shared-piper/de_DE-duo-low.onnx");
    EXPECT_EQ(anna.sample_rate, 22050);
    EXPECT_EQ(anna.reference, "en-us");
    EXPECT_THAT(anna.command,
        ElementsAre("/usr/bin/piper", "--model", "{model}", "--output_dir", "{dir}", "--speaker",
            "{speaker}"));
    EXPECT_EQ(voices.voices[4].description.language, "en-us");
    EXPECT_TRUE(find_natural_voices(folders, {}).voices.empty()) << "no program runs them";
}

TEST_F(NaturalVoiceFolders, AreNotReadByTheProgramThatSetsUpMice)
{
    const auto found_with = [&](const std::string& name, const std::string& script) {
        root.write("bin/" + name, script);
        fs::permissions(root / ("bin/" + name), fs::perms::owner_all);
        return find_piper(root / "bin");
    };
    EXPECT_EQ(found_with("piper", "#! /usr/bin/python3\ngi.require_version('Gtk', '3.0')"), "");
    EXPECT_EQ(
        found_with("piper", "#! /usr/bin/python3\nfrom piper import main"), root / "bin/piper");
    EXPECT_EQ(found_with("piper-tts", ""), root / "bin/piper-tts");
}

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
    const std::tuple<const char*, std::string, const char*> rows[] = {
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
    for (const auto& [mode, rest, message] : rows)
        EXPECT_THAT(
            failure_of("Name = A\nLanguage = en\nMode = " + std::string(mode) + "\n" + rest),
            testing::HasSubstr(message));
    EXPECT_EQ(failure_of(""), "Name is missing");
}

} // namespace
} // namespace tessavox::voice
