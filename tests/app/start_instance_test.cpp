#include "app/tessavox.h"
#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

struct StartedProcess : UserFiles {
    void start(const std::string& command_line, bool another_runs)
    {
        platform.command_line = command_line;
        tray.exists = true;
        file("opened.txt") = file_of_lines({ another_runs ? "1" : "0" });
        program.Main();
    }
    frmMain& main() { return program.main_window(); }
    std::string window() const
    {
        if (windows.open_forms.empty())
            return "none";
        if (windows.open_forms.front()->name() == "openmsg")
            return "question";
        return windows.open_forms.front()->Visible ? "shown" : "in tray";
    }
    openmsg& question() { return static_cast<openmsg&>(*windows.open_forms.at(0)); }

    Tessavox program{ platform };
};

struct Start : testing::Test, StartedProcess { };

TEST_F(Start, DecidesByTheFlagFileAndTheCommandLine)
{
    const struct {
        const char* command_line;
        bool another_runs;
        // What becomes of it:
        const char* flags; // of web.txt; "" if untouched
        const char* window;
    } cases[] = { { "", false, "", "shown" }, { "300", false, "1000", "in tray" },
        { "400", false, "", "shown" }, { "500", false, "", "shown" },
        { "600", false, "0001", "in tray" }, { "a.txt", false, "", "shown" },
        { "300 a.txt", false, "", "shown" }, { "301", false, "", "shown" },
        { "", true, "", "question" }, { "300", true, "1000", "none" },
        { " 300.0 ", true, "1000", "none" }, { "400", true, "0100", "none" },
        { "500", true, "0010", "none" }, { "600", true, "0001", "none" },
        { "a.txt", true, "", "question" } };
    for (const auto& row : cases) {
        SCOPED_TRACE(std::string(row.command_line) + (row.another_runs ? ", running" : ""));
        StartedProcess process;
        process.start(row.command_line, row.another_runs);
        EXPECT_EQ(process.window(), row.window);
        std::string web;
        for (const char* flag = row.flags; *flag; ++flag)
            web += std::string(1, *flag) + "\r\n";
        EXPECT_EQ(process.file("web.txt"), web.empty() ? "" : "\"\r\n" + web + "\"\r\n");
        // It says 1 either way: another copy runs, or this one does now.
        EXPECT_EQ(process.file("opened.txt"), file_of_lines({ "1" }));
        process.run_posted();
        EXPECT_EQ(process.has_quit, row.window == std::string("none"));
    }
}

TEST_F(Start, OpensTheStartDocumentUnchangedAlsoWhereNobodySeesIt)
{
    files.files["/app/first.txt"] = "a\r\nb";
    start("300", false);
    frmDocument& document = main().ActiveForm();
    EXPECT_EQ(document.Caption, "/app/first.txt");
    EXPECT_EQ(document.Tag, "1");
    EXPECT_EQ(to_utf8(document.rtfText->Text().view()), "a\nb");
    EXPECT_TRUE(main().Unload()); // and asks nothing
}

TEST_F(Start, ASecondCopyRunsBesideTheFirstIfTheUserWantsItAndElseEnds)
{
    StartedProcess unwanted;
    unwanted.start("", true);
    unwanted.question().Command1.user_press();
    unwanted.run_posted();
    EXPECT_TRUE(unwanted.has_quit);

    constexpr StringRow own[] = { { 2070, "ist schon offen" } };
    texts.set_language(own);
    start("", true);
    EXPECT_EQ(question().Label1.Caption, "ist schon offen");
    files.files.erase("/home/conf//opened.txt");
    question().Command2.user_press();
    run_posted();
    EXPECT_EQ(window(), "shown");
    EXPECT_FALSE(files.files.contains("/home/conf//opened.txt"));
    EXPECT_FALSE(has_quit);
    EXPECT_TRUE(main().Unload());
    EXPECT_EQ(file("opened.txt"), file_of_lines({ "0" })); // though the first one runs
    EXPECT_TRUE(has_quit);
}

} // namespace
} // namespace tessavox::tests
