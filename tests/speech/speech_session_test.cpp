#include "forms/localise_form.h"
#include "tests/fakes/running_program.h"

namespace tessavox {
namespace {

/// A session with its three windows, none of them loaded.
struct Session : testing::Test {
    FakePlatform outside;
    Forms forms{ outside.windows, outside.platform.post, [] {} };
    MainControls main{ forms };
    DockControls dock{ forms };
    DocumentControls document{ forms, outside.panes.create(), outside.web_panes.create() };
    PCCFile settings{ outside.files, outside.boxes, outside.texts };
    std::string folder;
    DocumentSpeech speech{ { document, dock, main }, outside.platform, settings, folder };
    SpeechSession& session = speech.session;

    Session()
    {
        speech.create_voice();
        LocaliseForm(main, outside.texts);
    }
    VoiceRecord& voice() { return outside.speech.voice(); }
    std::string state() const { return RunningProgram::state_of(session); }
};

TEST_F(Session, SetsTheControlsOfAllThreeWindows)
{
    struct Window {
        const Form& form;
        const char* while_idle;
        const char* while_speaking;
        const char* captions;
    };
    const Window windows[] = {
        { document,
            "SpeakBtn ReadClipbdBtn Play SpeaktofileBtn ReadClipboardtoFile VoiceCB FormatCB "
            "cpvSlider1 cpvSlider2 ResetBtn",
            "StopBtn PauseBtn", "" },
        { dock, "ReadClipbdBtn SpeaktofileBtn Play", "StopBtn PauseBtn", "PauseBtn:Caption" },
        { main,
            "mnuTrayReadClipboard mnuTrayPlayFile mnuTrayClipboardtoWav mnuPopSpeak mnuCtlSpeak "
            "mnuCtlclipboard mnuCtlPlay mnuCtlSaveClipboardTexttoWav mnuCtlSpeaktofile mnuEdit "
            "mnuWebsite mnuFile mnuFormat mnuWindow mnuInsert tbToolBar Toolbar2",
            "mnuTrayStop mnuTrayPause mnuPopStop mnuPopPause mnuCtlPause mnuCtlStop",
            "mnuCtlPause:Caption mnuTrayPause:Caption mnuPopPause:Caption" }
    };
    for (int round = 0; round < 16; ++round) {
        const bool before = round & 1, speaking = round & 2, paused = round & 4,
                   resumes = round & 8;
        SCOPED_TRACE(round);
        session.UpdateSpeechControls(true, resumes); // captions say so from here on
        std::vector<States> expected;
        for (const Window& window : windows) {
            enable_all(window.form, before);
            States states = with(with(states_of(window.form), window.while_idle, word(!speaking)),
                window.while_speaking, word(speaking));
            if (speaking)
                states = with(states, window.captions, paused ? "Resume" : "Pause");
            expected.push_back(states);
        }
        expected[0]["SkipBtn"] = word(speaking && before); // nothing ever enables it
        expected[0]["PauseBtn:Visible"] = word(!(speaking && paused));
        expected[0]["ResumeBtn:Visible"] = word(speaking && paused);

        session.UpdateSpeechControls(speaking, paused);

        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(states_of(windows[i].form), expected[static_cast<std::size_t>(i)]);
        EXPECT_EQ(session.m_bSpeaking(), speaking);
        EXPECT_EQ(session.m_bPaused(), paused);
    }
}

TEST_F(Session, EachTriggerLeadsToItsStateAndAsksTheVoice)
{
    struct Case {
        const char* trigger;
        std::function<void()> run;
        // After it, from each of: idle, speaking, speaking paused, idle paused.
        const char* after[4];
        std::vector<std::string> asked;
        const char* failing = "";
    };
    const auto pause = [&] { session.PauseBtn_Click(); };
    const auto resume = [&] { session.ResumeBtn_Click(); };
    const auto stop = [&] { session.StopBtn_Click(); };
    const auto skip = [&] { session.SkipBtn_Click(); };
    const Case cases[] = {
        { "pause", pause, { "idle paused", "speaking paused", "speaking paused", "idle paused" },
            { "Pause" } },
        { "resume", resume, { "idle", "speaking", "speaking", "idle" }, { "Resume" } },
        { "stop", stop, { "idle", "idle", "idle", "idle" }, { "Speak \"\" 2" } },
        { "skip", skip, { "idle", "speaking", "speaking paused", "idle paused" },
            { "Skip Sentence 0" } },
        { "start of stream", [&] { voice().start_stream(); },
            { "speaking", "speaking", "speaking paused", "speaking paused" }, {} },
        { "end of stream", [&] { voice().end_stream(); },
            { "idle", "idle", "idle paused", "idle paused" }, {} },
        // A failure of the voice stops nothing but a stop.
        { "pause that fails", pause,
            { "idle paused", "speaking paused", "speaking paused", "idle paused" }, {}, "Pause" },
        { "resume that fails", resume, { "idle", "speaking", "speaking", "idle" }, {}, "Resume" },
        { "stop without its resume", stop, { "idle", "idle", "speaking paused", "idle paused" },
            { "Speak \"\" 2" }, "Resume" },
        { "stop that fails", stop, { "idle", "speaking", "speaking paused", "idle paused" }, {},
            "Speak" },
        { "skip that fails", skip, { "idle", "speaking", "speaking paused", "idle paused" }, {},
            "Skip" }
    };
    const std::pair<bool, bool> befores[]
        = { { false, false }, { true, false }, { true, true }, { false, true } };
    for (const Case& row : cases) {
        for (int i = 0; i < 4; ++i) {
            session.UpdateSpeechControls(befores[i].first, befores[i].second);
            SCOPED_TRACE(row.trigger + (" from " + state()));
            auto expected = row.asked;
            if (row.trigger == std::string("stop") && befores[i].second)
                expected.push_back("Resume"); // after the purge
            voice().mend();
            voice().fail(row.failing);
            row.run();
            EXPECT_EQ(state(), row.after[i]);
            EXPECT_EQ(voice().take_calls(), expected);
        }
    }
}

} // namespace
} // namespace tessavox
