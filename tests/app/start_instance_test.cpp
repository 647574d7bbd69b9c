#include "tests/fakes/running_program.h"

#include <gtest/gtest.h>

namespace tessavox::tests {
namespace {

struct Case {
    const char* command_line;
    bool running;
    // What becomes of it:
    const char* flags; // of web.txt; "" if untouched
    const char* window; // "shown", "in tray", "question" or "none"
};

const Case cases[] = {
    { "", false, "", "shown" },
    { "300", false, "1000", "in tray" },
    { "400", false, "", "shown" },
    { "500", false, "", "shown" },
    { "600", false, "0001", "in tray" },
    { "a.txt", false, "", "shown" },
    { "300 a.txt", false, "", "shown" },
    { "301", false, "", "shown" },
    { "", true, "", "question" },
    { "300", true, "1000", "none" },
    { " 300.0 ", true, "1000", "none" },
    { "400", true, "0100", "none" },
    { "500", true, "0010", "none" },
    { "600", true, "0001", "none" },
    { "a.txt", true, "", "question" },
};

std::string window_of(RunningProgram& program)
{
    const auto& forms = program.windows.open_forms;
    if (forms.empty())
        return "none";
    if (forms.front()->name() == "openmsg")
        return "question";
    return program.main_window().Visible ? "shown" : "in tray";
}

TEST(Start, DecidesByTheFlagFileAndTheCommandLine)
{
    for (const Case& row : cases) {
        SCOPED_TRACE(std::string(row.command_line) + (row.running ? ", running" : ""));
        RunningProgram program;
        program.tray.icon = true;
        program.files.files["/home/conf//opened.txt"] = file_of_lines({ row.running ? "1" : "0" });
        program.start(row.command_line);

        EXPECT_EQ(window_of(program), row.window);
        std::string web;
        for (const char* flag = row.flags; *flag; ++flag)
            web += std::string(1, *flag) + "\r\n";
        EXPECT_EQ(program.file("/web.txt"), web.empty() ? "" : "\"\r\n" + web + "\"\r\n");
        const bool became_application = std::string(row.window) == "shown" || row.window[0] == 'i';
        EXPECT_EQ(program.file("/opened.txt"),
            file_of_lines({ became_application || row.running ? "1" : "0" }));
        program.run_posted();
        EXPECT_EQ(program.has_quit, std::string(row.window) == "none");
    }
}

TEST(Start, CountsAFlagFileThatSaysNothingAsNoCopy)
{
    for (const char* bytes : { "", "1", "\"\r\nx\r\n\"\r\n", "\"\r\n\r\n\"\r\n" }) {
        RunningProgram program;
        program.files.files["/home/conf//opened.txt"] = bytes;
        program.start();
        EXPECT_EQ(window_of(program), "shown");
    }
    RunningProgram program;
    program.files.files.erase("/home/conf//opened.txt");
    program.files.refused.insert("/home/conf//opened.txt");
    program.start();
    EXPECT_EQ(window_of(program), "shown");
}

TEST(Start, WithoutATrayIconAHiddenStartStaysInReach)
{
    RunningProgram program;
    program.start("300");
    EXPECT_TRUE(program.main_window().Visible);
    EXPECT_TRUE(program.main_window().window_state == WindowState::minimised);
}

TEST(Start, OpensTheStartDocumentUnchanged)
{
    RunningProgram program;
    program.files.files["/app/first.txt"] = "a\r\nb";
    program.start();
    EXPECT_EQ(program.active().Caption, "/app/first.txt");
    EXPECT_EQ(program.active().Tag, "1");
    EXPECT_EQ(to_utf8(program.pane().Text().view()), "a\nb");
    EXPECT_EQ(program.main_window().file_commands.dlgCommonDialog.FileName, "/app/first.txt");
    EXPECT_TRUE(program.active().user_closed());
    EXPECT_TRUE(program.boxes.shown.empty());
}

TEST(Start, WithoutItsDocumentShowsAnEmptyOne)
{
    RunningProgram program;
    program.files.files.erase("/app/first.txt");
    program.start();
    EXPECT_EQ(program.active().Caption, "/app/first.txt");
    EXPECT_TRUE(program.pane().Text().empty());
    // Its first change is the user's and counts.
    program.pane().user_types(u"x");
    program.boxes.answers = { MessageAnswer::no };
    EXPECT_TRUE(program.active().user_closed());
    EXPECT_EQ(program.boxes.shown.size(), 1u);
}

TEST(Start, ASecondCopyRunsBesideTheFirstIfTheUserWantsIt)
{
    RunningProgram program;
    program.files.files["/home/conf//opened.txt"] = file_of_lines({ "1" });
    program.start();
    auto& question = static_cast<openmsg&>(*program.windows.open_forms.at(0));
    EXPECT_EQ(question.Label1.Caption, "Tessavox has been opened.");
    program.files.files.erase("/home/conf//opened.txt");
    question.Command2.user_press();
    program.run_posted();
    EXPECT_EQ(window_of(program), "shown");
    EXPECT_FALSE(program.files.files.contains("/home/conf//opened.txt"));
    EXPECT_FALSE(program.has_quit);
    EXPECT_TRUE(program.main_window().Unload());
    EXPECT_EQ(program.file("/opened.txt"), file_of_lines({ "0" })); // though the first one runs
    EXPECT_TRUE(program.has_quit);
}

TEST(Start, ClosingTheQuestionEndsTheProcess)
{
    RunningProgram program;
    program.files.files["/home/conf//opened.txt"] = file_of_lines({ "1" });
    program.start();
    static_cast<openmsg&>(*program.windows.open_forms.at(0)).Command1.user_press();
    program.run_posted();
    EXPECT_TRUE(program.has_quit);
}

} // namespace
} // namespace tessavox::tests
