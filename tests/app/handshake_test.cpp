#include "tests/fakes/running_program.h"

namespace tessavox {
namespace {

const std::string zeros = file_of_lines({ "0", "0", "0", "0" });

struct Handshakes : ProgramTest {
    Handshakes()
    {
        web() = zeros;
        control() = zeros;
    }
    void start()
    {
        RunningProgram::start();
        document().Check1.Value = 0;
        voice().take_calls();
    }
    SpeechSession& session() { return document().speech.session; }
    std::string& web() { return file("web.txt"); }
    std::string& control() { return file("control.txt"); }
    /// The text that a look at the clipboard has spoken, "" for none.
    std::string spoken_at_a_look()
    {
        voice().take_calls();
        main.Timer1.tick();
        for (const std::string& call : voice().take_calls()) {
            if (call.starts_with("Speak"))
                return call.substr(7, call.rfind(' ') - 8);
        }
        return {};
    }
};

TEST_F(Handshakes, ALookAtTheClipboardReadsMarksAndClearsAsTheFlagAndTheBoxSay)
{
    const struct {
        bool box;
        const char* flag; // line 2 of web.txt
        std::u16string copied; // empty: what was read last still lies there
        bool speaking;
        const char* spoken;
        std::u16string left;
        bool flags_cleared;
    } cases[] = {
        { false, "0", u"abc", false, "", u"abc", false },
        { true, "0", u"abc", false, "abc", u"abc ", true },
        { true, "0", {}, false, "", u"old ", true },
        { true, "0", u"old", false, "old", u"old ", true }, // copied once more
        { true, "0", u"abc", true, "", u"abc ", true }, // dropped, and never read later
        { false, "1", u"abc", false, "abc", u"", true },
        { false, " 1.0 ", u"abc", false, "abc", u"", true }, // read as a number
        { false, "1", {}, false, "", u"", true },
        { false, "one", u"abc", false, "", u"abc", false },
        { false, "1", u"abc", true, "", u"", true },
    };
    start();
    for (const auto& row : cases) {
        SCOPED_TRACE(
            testing::Message() << row.box << row.flag << to_utf8(row.copied) << row.speaking);
        session().UpdateSpeechControls(false, false);
        clipboard.text = u"old";
        document().Check1.Value = 1;
        main.Timer1.tick();
        session().UpdateSpeechControls(row.speaking, false);
        document().Check1.Value = row.box;
        if (!row.copied.empty())
            clipboard.text = row.copied;
        clipboard.fetched = row.box; // nobody has looked before a command comes
        const std::string before = file_of_lines({ row.flag, "0", "7", "0" });
        web() = before;
        EXPECT_EQ(spoken_at_a_look(), row.spoken);
        EXPECT_EQ(clipboard.text, row.left);
        EXPECT_EQ(web(), row.flags_cleared ? zeros : before);
        EXPECT_EQ(spoken_at_a_look(), ""); // nothing is read twice
    }
}

TEST_F(Handshakes, WhatLayThereBeforeTheStartIsReadOnlyOnCommandAndTheBoxCountsInFrontOnly)
{
    clipboard.text = u"before";
    start();
    document().Check1.Value = 1;
    EXPECT_EQ(spoken_at_a_look(), "");
    web() = file_of_lines({ "1", "0", "0", "0" });
    EXPECT_EQ(spoken_at_a_look(), "before");
    open_another().Check1.Value = 0;
    clipboard.text = u"abc";
    main.Timer1.tick();
    EXPECT_EQ(clipboard.text, u"abc");
    EXPECT_TRUE(main.mnuTrayReadClipboard.Enabled);
    document().Check1.Value = 1;
    EXPECT_FALSE(main.mnuTrayReadClipboard.Enabled);
    main.Timer1.tick();
    EXPECT_EQ(clipboard.text, u"abc ");
}

TEST_F(Handshakes, WithoutADocumentCopiesAreMarkedAndFlagsClearedAllTheSame)
{
    start();
    main.mnuFileClose.run();
    for (const char* flag : { "0", "1" }) {
        clipboard.text = u"abc";
        web() = file_of_lines({ flag, "0", "7", "0" });
        main.Timer1.tick();
        EXPECT_EQ(clipboard.text, *flag == '1' ? u"" : u"abc ");
        EXPECT_EQ(web(), zeros);
    }
    web() = file_of_lines({ "0", "1", "0", "0" });
    EXPECT_THROW(main.Timer2.tick(), Failure);
    EXPECT_EQ(web(), zeros);
}

TEST_F(Handshakes, LooksRestUntilANoticeComesAlsoIfItComesDuringALook)
{
    start();
    EXPECT_FALSE(main.Timer1.Resting);
    main.Timer1.tick();
    EXPECT_TRUE(main.Timer1.Resting);
    changes.notice();
    EXPECT_FALSE(main.Timer1.Resting);
    boxes.while_shown = changes.notice;
    files.files.erase("/home/conf//web.txt");
    main.Timer1.tick();
    EXPECT_FALSE(main.Timer1.Resting);
}

TEST_F(Handshakes, CommandsAreTakenInTheirOrderAndDoWhatTheStateAllows)
{
    const struct {
        std::initializer_list<const char*> flags;
        bool speaking, paused;
        const char* call; // of the voice, "" for none
        bool speaking_after, paused_after;
    } cases[] = {
        { { "0", "1", "1", "1" }, true, false, "Pause", true, true },
        { { "0", "1", "0", "0" }, true, true, "Resume", true, false },
        { { "0", "1", "0", "0" }, false, false, "", false, false },
        { { "0", "0", "1", "1" }, true, true, "Speak \"\" 2", false, false },
        { { "0", "0", "1", "0" }, false, false, "", false, false },
        { { "0", "0", "0", "1" }, true, false, "", true, false }, // dropped, not deferred
        { { "0", "0", "0", "1" }, false, false, "Voice Anna", false, false },
        { { "0", "1 ", "0", "0" }, true, false, "", true, false }, // compared as text
        { { "1", "0", "0", "0" }, true, false, "", true, false }, // the other timer's
    };
    start();
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.call << row.speaking << row.paused);
        session().UpdateSpeechControls(row.speaking, row.paused);
        dialogs.answers = { std::nullopt };
        const std::string before = file_of_lines(row.flags);
        web() = before;
        voice().take_calls();
        main.Timer2.tick();
        const auto calls = voice().take_calls();
        EXPECT_EQ(calls.empty() ? "" : calls.front(), row.call);
        EXPECT_EQ(session().m_bSpeaking(), row.speaking_after);
        EXPECT_EQ(session().m_bPaused(), row.paused_after);
        const bool taken = before.find("1\r", 5) != std::string::npos;
        EXPECT_EQ(web(), taken ? zeros : before);
    }
}

TEST_F(Handshakes, BrokenFilesRaiseNoFlag)
{
    start();
    const std::string hostile[] = { "", "\"", "1", "\"\r\n", std::string("\"\r\n\0\r\n", 7),
        std::string(100'000, '1'), "\"\r\n11\r\n11\r\n11\r\n11\r\n\"\r\n" };
    document().speech.reading.SpeakBtn_Click();
    clipboard.text = u"abc";
    for (const std::string& bytes : hostile) {
        control() = file_of_lines({ "0", "1", "1", "1" }).substr(0, 3) + "0\r\n";
        web() = bytes;
        main.Timer1.tick();
        main.Timer2.tick();
        main.Timer1.tick();
        EXPECT_EQ(web(), bytes);
        EXPECT_EQ(clipboard.text, u"abc");
        EXPECT_TRUE(session().m_bSpeaking());
    }
    // A file that is not there is told by a message, and its lines are not those of the other one.
    control() = file_of_lines({ "0", "0", "1", "1" });
    main.Timer2.tick();
    files.files.erase("/home/conf//web.txt");
    boxes.while_shown = [&] { main.Timer2.tick(); }; // nor is it told by the other timer meanwhile
    const auto expect_one_message = [&] {
        main.Timer1.tick();
        main.Timer2.tick();
        EXPECT_EQ(boxes.take_shown().size(), 1u);
        EXPECT_TRUE(session().m_bSpeaking());
    };
    expect_one_message();
    // More lines than can be counted, and what would take its time at each look.
    for (const std::string& bytes : { std::string(40'000, '\r'), std::string(2'000'000, 'x') }) {
        web() = zeros;
        main.Timer2.tick();
        web() = bytes;
        expect_one_message();
    }
}

} // namespace
} // namespace tessavox
