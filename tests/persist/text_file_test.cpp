#include "persist/text_file.h"

#include "tests/fakes/fake_platform.h"

#include <gtest/gtest.h>

namespace tessavox {
namespace {

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
    struct Case {
        const char* bytes;
        Lines lines;
        const char* result;
    };
    const Case cases[] = { { "a\r\nb\r\n", { "a", "b" }, "a\r\nb" },
        { "a\rb", { "a", "b" }, "a\r\nb" }, { "a\nb\r\n", { "a\nb" }, "a\nb" },
        { "a\r\n\r\n\r\nb\r\n", { "a", "", "", "b" }, "a\r\n\r\n\r\nb" },
        { "\r\n\r\na\r\n", { "", "", "a" }, "a" }, { "\r\n\r\n\r\n", { "", "", "" }, "" },
        { "a\r\r\nb", { "a", "", "b" }, "a\r\n\r\nb" }, { "a\r", { "a" }, "a" } };
    for (const Case& row : cases) {
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

TEST_F(TextFile, LinesAreCountedInSixteenBits)
{
    std::string bytes;
    for (int line = 1; line <= 32767; ++line)
        bytes += "x\r\n";
    put(bytes);
    EXPECT_NE(file.ReadFromFile("/f"), "");
    EXPECT_EQ(file.TotalLine(), 32767);
    EXPECT_TRUE(outside.boxes.shown.empty());

    put("a\r\n");
    file.ReadFromFile("/f");
    put(bytes + "one more");
    EXPECT_EQ(file.ReadFromFile("/f"), "");
    EXPECT_EQ(outside.boxes.shown.size(), 1u);
    EXPECT_EQ(file.TotalLine(), 1);
}

} // namespace
} // namespace tessavox
