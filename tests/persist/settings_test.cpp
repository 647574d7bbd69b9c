#include "persist/settings_files.h"
#include "persist/text_file.h"
#include "platform/failure.h"
#include "platform/number_text.h"
#include "speech/formats.h"
#include "tests/fakes/fake_platform.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace tessavox {
namespace {

TEST(Settings, AreBuiltByteForByte)
{
    EXPECT_EQ(speech_settings_text({ "16kHz 8Bit Mono", -1, -10, 1, "http://a.example/" }),
        "\r\n16kHz 8Bit Mono\r\n-1\r\n-10\r\n 1\r\nhttp://a.example/\r\n");
    EXPECT_EQ(speech_settings_text({ "", 0, 10, 0, "" }), "\r\n\r\n 0\r\n 10\r\n 0\r\n\r\n");

    UrlHistory history;
    EXPECT_EQ(history_settings_text(history), "\r\n");
    history[0] = "a";
    history[3] = "say \"b\"";
    history[10] = "c";
    history[11] = "in memory only";
    EXPECT_EQ(history_settings_text(history), "\r\na\r\nsay \"b\"\r\nc\r\n");

    EXPECT_EQ(opened_text(true), "\r\n1\r\n");
    EXPECT_EQ(command_flags_text(CommandFlag::none), "\r\n0\r\n0\r\n0\r\n0\r\n");
    EXPECT_EQ(command_flags_text(CommandFlag::pause), "\r\n0\r\n1\r\n0\r\n0\r\n");
}

TEST(Settings, NumbersReadAsAPersonMeansThem)
{
    const std::pair<const char*, int> good[] = { { " 0", 0 }, { "-1", -1 }, { " 12 ", 12 },
        { "+7", 7 }, { "10.4", 10 }, { "10.5", 10 }, { "11.5", 12 }, { "-2.5", -2 }, { "1e2", 100 },
        { "32767", 32767 }, { "-32768", -32768 }, { "32767.4", 32767 }, { "007", 7 } };
    for (const auto& [text, number] : good)
        EXPECT_EQ(to_integer16(text), number) << text;
    const char* const bad[] = { "", " ", "\"", "one", "1 2", "0x10", "1,5", "nan", "inf", "-", "+",
        "+-1", "--1", "1e", "32768", "-32769", "1e300", "1e999", "48kHz", "True" };
    for (const char* text : bad)
        EXPECT_THROW(to_integer16(text), Failure) << text;
}

/// The files of a first start have to be what the program itself would write.
TEST(Settings, ShippedFilesHaveTheFormOfWrittenOnes)
{
    const std::pair<const char*, std::string> shipped[] = { { opened_file, opened_text(false) },
        { web_file, command_flags_text(CommandFlag::none) },
        { control_file, command_flags_text(CommandFlag::none) },
        { speech_settings_file,
            speech_settings_text({ formats[35].text, 0, 0, 1, "http://www.example.org/" }) },
        { font_settings_file, "\r\nComic Sans MS\r\n 12\r\nFalse\r\n" },
        { history_settings_file, history_settings_text({}) } };
    for (const auto& [name, text] : shipped) {
        std::ifstream file(std::string(TESSAVOX_SHARE "/conf") + name, std::ios::binary);
        std::stringstream bytes;
        bytes << file.rdbuf();
        EXPECT_EQ(bytes.str(), '"' + text + "\"\r\n") << name;
    }
}

struct TextFile : testing::Test {
    void put(const std::string& bytes) { outside.files.files["/f"] = bytes; }
    std::vector<std::string> lines()
    {
        std::vector<std::string> all;
        for (std::int16_t n = 1; n <= file.TotalLine(); ++n)
            all.push_back(file.FileText(n));
        return all;
    }
    FakePlatform outside;
    PCCFile file{ outside.files, outside.boxes, outside.texts };
};

using Lines = std::vector<std::string>;

TEST_F(TextFile, LinesEndAtCarriageReturns)
{
    const struct {
        const char* bytes;
        Lines lines;
        const char* result;
    } cases[] = { { "a\r\nb\r\n", { "a", "b" }, "a\r\nb" }, { "a\rb", { "a", "b" }, "a\r\nb" },
        { "a\nb\r\n", { "a\nb" }, "a\nb" },
        { "a\r\n\r\n\r\nb\r\n", { "a", "", "", "b" }, "a\r\n\r\n\r\nb" },
        { "\r\n\r\na\r\n", { "", "", "a" }, "a" }, { "\r\n\r\n\r\n", { "", "", "" }, "" },
        { "a\r\r\nb", { "a", "", "b" }, "a\r\n\r\nb" }, { "a\r", { "a" }, "a" } };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::PrintToString(row.bytes));
        put(row.bytes);
        EXPECT_EQ(file.ReadFromFile("/f"), row.result);
        EXPECT_EQ(lines(), row.lines);
    }
}

TEST_F(TextFile, LinesThatAreNotThereAreEmptyButForTheSpareOneOfTheReadBefore)
{
    EXPECT_EQ(file.FileText(1), "");
    put("old 1\r\nold 2\r\nold 3");
    file.ReadFromFile("/f");
    for (const int number : { -32768, -1, 0, 4, 5, 32767 })
        EXPECT_EQ(file.FileText(static_cast<std::int16_t>(number)), "") << number;
    put("new 1");
    file.ReadFromFile("/f");
    EXPECT_EQ(lines(), Lines{ "new 1" });
    EXPECT_EQ(file.FileText(2), "old 2");
    EXPECT_EQ(file.FileText(3), "");

    put("");
    EXPECT_EQ(file.ReadFromFile("/f"), "");
    EXPECT_EQ(file.TotalLine(), 0);
    EXPECT_EQ(file.FileText(1), "new 1");
}

TEST_F(TextFile, AFileThatCannotBeReadIsToldAndLeavesTheLinesOfTheReadBefore)
{
    EXPECT_EQ(file.ReadFromFile(""), ""); // none was read by name yet
    put("a\r\nb");
    file.ReadFromFile("/f");
    EXPECT_EQ(file.ReadFromFile(""), "a\r\nb"); // the one read last
    EXPECT_EQ(file.ReadFromFile("/gone"), "");
    EXPECT_EQ(lines(), (Lines{ "a", "b" }));
    const auto& boxes = outside.boxes.shown;
    ASSERT_EQ(boxes.size(), 2u);
    const std::string start = "The software setting files ";
    const std::string end = " have been moved, please reinstall our software again";
    EXPECT_EQ(boxes[0].text, start + end);
    EXPECT_EQ(boxes[1].text, start + "/gone" + end);
    EXPECT_EQ(boxes[1].title, "Tessavox");
    EXPECT_EQ(boxes[1].buttons, MessageButtons::ok);
}

} // namespace
} // namespace tessavox
