#include "platform/voice/natural/natural_voices.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>

#include <sys/stat.h>

namespace tessavox::voice {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class NaturalVoiceFolders : public testing::Test {
protected:
    NaturalVoiceFolders()
    {
        std::string name = (fs::temp_directory_path() / "natural_voices.XXXXXX").string();
        m_root = mkdtemp(name.data());
        m_folders = { { m_root / "own", m_root / "shared" },
            { m_root / "own-piper", m_root / "shared-piper" } };
        write("bin/parrot", "");
        fs::permissions(m_root / "bin/parrot", fs::perms::owner_all);
    }
    ~NaturalVoiceFolders() override { fs::remove_all(m_root); }

    void write(const fs::path& file, const std::string& text)
    {
        fs::create_directories((m_root / file).parent_path());
        std::ofstream(m_root / file) << text;
    }
    void describe(const fs::path& file, const std::string& name, const std::string& more = "",
        const std::string& program = "parrot")
    {
        write(file,
            "Name=" + name + "\nLanguage=en\nMode=wave\nCommand=" + program + " {out}\n" + more);
    }
    void add_model(const fs::path& file, const std::string& members = "")
    {
        write(file, "weights");
        write(file.string() + ".json",
            R"({"audio":{"sample_rate":22050},"espeak":{"voice":"en-us"})" + members + "}");
    }
    NaturalVoices found() const
    {
        return find_natural_voices(m_folders,
            { "relative:/nowhere:" + (m_root / "bin").string() + ":/nowhere", "/usr/bin/piper" });
    }
    static std::vector<std::string> named(const NaturalVoices& found)
    {
        std::vector<std::string> names;
        for (const NaturalVoice& voice : found.voices)
            names.push_back(voice.id + " " + voice.description.name);
        return names;
    }

    fs::path m_root;
    VoiceFolders m_folders;
};

TEST_F(NaturalVoiceFolders, ThatAreNotThereHoldNothing)
{
    EXPECT_TRUE(found().voices.empty());
    EXPECT_TRUE(found().unfit.empty());
}

TEST_F(NaturalVoiceFolders, GiveTheUsersOwnVoiceBeforeASharedOneOfItsName)
{
    describe("own/b.voice", "Own B");
    describe("own/a.voice", "Own A", "Model=deep/a.bin");
    write("own/deep/a.bin", "");
    describe("shared/b.voice", "Shared B");
    describe("shared/c.voice", "Shared C", "", (m_root / "bin/parrot").string());
    write("own/readme.txt", "no voice");
    const NaturalVoices voices = found();
    EXPECT_THAT(named(voices), ElementsAre("voice:a Own A", "voice:b Own B", "voice:c Shared C"));
    EXPECT_EQ(voices.voices[0].description.command.front(), m_root / "bin/parrot");
    EXPECT_EQ(voices.voices[0].description.model, m_root / "own/deep/a.bin");
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
    EXPECT_EQ(anna.model, m_root / "shared-piper/de_DE-duo-low.onnx");
    EXPECT_EQ(anna.sample_rate, 22050);
    EXPECT_EQ(anna.reference, "en-us");
    EXPECT_THAT(anna.command,
        ElementsAre("/usr/bin/piper", "--model", "{model}", "--output_dir", "{dir}", "--speaker",
            "{speaker}"));
    EXPECT_EQ(voices.voices[4].description.language, "en-us");
    EXPECT_TRUE(find_natural_voices(m_folders, {}).voices.empty()) << "no program runs them";
}

TEST_F(NaturalVoiceFolders, TellOfEachFileThatIsNoVoiceWhy)
{
    describe("own/1.voice", "A", "", "no-such-program");
    describe("own/2.voice", "A", "", "bin/parrot");
    describe("own/3.voice", "A", "Model=missing.bin");
    write("own/4.voice", "Nam=A");
    write("own/5.voice", std::string(70'000, '#'));
    fs::create_directories(m_root / "own/6.voice");
    ASSERT_EQ(mkfifo((m_root / "own/7.voice").c_str(), 0600), 0);
    fs::create_symlink("nowhere", m_root / "own/8.voice");
    fs::create_symlink(m_root / "own", m_root / "own/loop");
    write("own-piper/1.onnx", "");
    add_model("own-piper/2.onnx");
    write("own-piper/2.onnx.json", "{}");
    fs::create_directories(m_root / "own-piper/3.onnx");
    add_model("own-piper/4\n.onnx");
    add_model("own-piper/5\xFF.onnx");
    const char* reasons[] = { "no program no-such-program", "no program bin/parrot",
        "there is no model", "line 1: no key", "is larger than", "is no plain file",
        "is no plain file", "can't be opened", "its config 1.onnx.json can't be opened",
        "its config 2.onnx.json tells no sample rate", "is no plain file", "is no plain text",
        "is no plain text" };
    const NaturalVoices voices = found();
    EXPECT_TRUE(voices.voices.empty());
    ASSERT_EQ(voices.unfit.size(), std::size(reasons));
    for (std::size_t at = 0; at < std::size(reasons); ++at)
        EXPECT_THAT(voices.unfit[at].reason, HasSubstr(reasons[at])) << voices.unfit[at].origin;
}

TEST(VoiceFolders, AreThoseOfTheUserBeforeThoseOfTheSystem)
{
    EXPECT_EQ(voice_folders("/data", "/home/me").descriptions.front(), "/data/tessavox/voices");
    EXPECT_EQ(
        voice_folders("relative", "/home/me").piper.front(), "/home/me/.local/share/piper-voices");
    EXPECT_THAT(voice_folders("", "").piper,
        ElementsAre(
            "/usr/local/share/piper-voices", "/usr/share/piper-voices", "/usr/share/piper/voices"));
}

} // namespace
} // namespace tessavox::voice
