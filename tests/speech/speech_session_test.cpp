#include "forms/localise_form.h"
#include "speech/document_speech.h"

#include "tests/fakes/running_program.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tessavox {
namespace {

/// What a window's controls say: "name", "name:Visible", "name:Caption" and their values.
using States = std::map<std::string, std::string>;

const char* word(bool value)
{
    return value ? "on" : "off";
}

States states_of(const Form& form)
{
    States states;
    for (const Control* control : form.controls()) {
        states[control->name()] = word(control->Enabled);
        states[control->name() + ":Visible"] = word(control->Visible);
        states[control->name() + ":Caption"] = control->Caption;
    }
    return states;
}

States with(States states, const std::string& names, const std::string& value)
{
    std::istringstream stream(names);
    for (std::string name; stream >> name;) {
        EXPECT_TRUE(states.contains(name)) << name;
        states[name] = value;
    }
    return states;
}

/// A session with its three windows, none of them loaded.
struct Session : testing::Test {
    FakePlatform outside;
    Forms forms{ outside.windows, outside.platform.post, [] {} };
    std::shared_ptr<MainControls> main = std::make_shared<MainControls>(forms);
    std::shared_ptr<DockControls> dock = std::make_shared<DockControls>(forms);
    std::shared_ptr<DocumentControls> document
        = std::make_shared<DocumentControls>(forms, outside.panes.create());
    PCCFile settings{ outside.files, outside.boxes, outside.texts };
    std::string folder;
    DocumentSpeech speech{ { *document, *dock, *main }, outside.platform, settings, folder };
    SpeechSession& session = speech.session;

    Session()
    {
        speech.create_voice();
        for (Form* form : std::initializer_list<Form*>{ main.get(), document.get() })
            LocaliseForm(*form, outside.texts);
    }
    VoiceRecord& voice() { return outside.speech.voice(); }
    void set_all_enabled(bool value)
    {
        for (Form* form : std::initializer_list<Form*>{ main.get(), dock.get(), document.get() }) {
            for (Control* control : form->controls())
                control->Enabled = value;
        }
    }
    std::string state() const
    {
        return std::string(session.m_bSpeaking() ? "speaking" : "idle")
            + (session.m_bPaused() ? " paused" : "");
    }
};

const std::string document_off = "SpeakBtn ReadClipbdBtn Play SpeaktofileBtn ReadClipboardtoFile "
                                 "VoiceCB FormatCB cpvSlider1 cpvSlider2 ResetBtn";
const std::string dock_off = "ReadClipbdBtn SpeaktofileBtn Play";
const std::string dock_on = "StopBtn PauseBtn";
const std::string main_off
    = "mnuTrayReadClipboard mnuTrayPlayFile mnuTrayClipboardtoWav mnuPopSpeak mnuCtlSpeak "
      "mnuCtlclipboard mnuCtlPlay mnuCtlSaveClipboardTexttoWav mnuCtlSpeaktofile mnuEdit "
      "mnuWebsite "
      "mnuFile mnuFormat mnuWindow mnuInsert tbToolBar Toolbar2";
const std::string main_on
    = "mnuTrayStop mnuTrayPause mnuPopStop mnuPopPause mnuCtlPause mnuCtlStop";

TEST_F(Session, ASpeakingDocumentLeavesStopAndPauseOnly)
{
    for (const bool before : { false, true }) {
        set_all_enabled(before);
        for (const bool paused : { false, true }) {
            const char* const caption = paused ? "Resume" : "Pause";
            States in_document = with(states_of(*document), document_off, "off");
            in_document = with(in_document, "StopBtn PauseBtn", "on");
            in_document = with(in_document, "PauseBtn:Visible", word(!paused));
            in_document = with(in_document, "ResumeBtn:Visible", word(paused));
            States in_dock = with(with(states_of(*dock), dock_off, "off"), dock_on, "on");
            in_dock = with(in_dock, "PauseBtn:Caption", caption);
            States in_main = with(with(states_of(*main), main_off, "off"), main_on, "on");
            in_main = with(
                in_main, "mnuCtlPause:Caption mnuTrayPause:Caption mnuPopPause:Caption", caption);

            session.UpdateSpeechControls(true, paused);

            EXPECT_EQ(states_of(*document), in_document);
            EXPECT_EQ(states_of(*dock), in_dock);
            EXPECT_EQ(states_of(*main), in_main);
            EXPECT_EQ(state(), paused ? "speaking paused" : "speaking");
        }
    }
}

TEST_F(Session, AnIdleDocumentOffersAllButStopAndPauseAndKeepsCaptions)
{
    for (const bool before : { false, true }) {
        for (const bool paused : { false, true }) {
            session.UpdateSpeechControls(true, true); // captions say "Resume" from here on
            set_all_enabled(before);
            States in_document = with(states_of(*document), document_off, "on");
            in_document = with(in_document, "StopBtn PauseBtn SkipBtn ResumeBtn:Visible", "off");
            in_document = with(in_document, "PauseBtn:Visible", "on");
            in_document["ResumeBtn"] = word(before);
            const States in_dock = with(with(states_of(*dock), dock_off, "on"), dock_on, "off");
            const States in_main = with(with(states_of(*main), main_off, "on"), main_on, "off");

            session.UpdateSpeechControls(false, paused);

            EXPECT_EQ(states_of(*document), in_document);
            EXPECT_EQ(states_of(*dock), in_dock);
            EXPECT_EQ(states_of(*main), in_main);
            EXPECT_EQ(main->mnuCtlPause.Caption, "Resume");
            EXPECT_EQ(state(), paused ? "idle paused" : "idle");
        }
    }
}

TEST_F(Session, EachTriggerLeadsToItsState)
{
    struct Case {
        const char* trigger;
        std::function<void()> run;
        // After it, from each of: idle, speaking, speaking paused, idle paused.
        const char* after[4];
    };
    const Case cases[] = {
        { "pause", [&] { session.PauseBtn_Click(); },
            { "idle paused", "speaking paused", "speaking paused", "idle paused" } },
        { "resume", [&] { session.ResumeBtn_Click(); },
            { "idle", "speaking", "speaking", "idle" } },
        { "stop", [&] { session.StopBtn_Click(); }, { "idle", "idle", "idle", "idle" } },
        { "skip", [&] { session.SkipBtn_Click(); },
            { "idle", "speaking", "speaking paused", "idle paused" } },
        { "start of stream", [&] { voice().start_stream(); },
            { "speaking", "speaking", "speaking paused", "speaking paused" } },
        { "end of stream", [&] { voice().end_stream(); },
            { "idle", "idle", "idle paused", "idle paused" } },
    };
    const std::pair<bool, bool> befores[]
        = { { false, false }, { true, false }, { true, true }, { false, true } };
    for (const Case& row : cases) {
        for (int i = 0; i < 4; ++i) {
            session.UpdateSpeechControls(befores[i].first, befores[i].second);
            SCOPED_TRACE(row.trigger + (" from " + state()));
            row.run();
            EXPECT_EQ(state(), row.after[i]);
        }
    }
}

using Calls = std::vector<std::string>;

TEST_F(Session, StoppingAPausedReadingPurgesBeforeItResumes)
{
    session.UpdateSpeechControls(true, true);
    session.StopBtn_Click();
    EXPECT_EQ(voice().take_calls(), (Calls{ "Speak \"\" 2", "Resume" }));
    session.StopBtn_Click();
    EXPECT_EQ(voice().take_calls(), (Calls{ "Speak \"\" 2" }));
}

TEST_F(Session, AFailureOfTheVoiceStopsOnlyAStop)
{
    session.UpdateSpeechControls(true, true);
    voice().fail("Resume");
    session.StopBtn_Click();
    EXPECT_EQ(state(), "speaking paused");
    voice().fail("Speak");
    session.StopBtn_Click();
    EXPECT_EQ(state(), "speaking paused");

    voice().fail("Pause");
    session.ResumeBtn_Click();
    EXPECT_EQ(state(), "speaking");
    session.PauseBtn_Click();
    EXPECT_EQ(state(), "speaking paused");
}

TEST_F(Session, SkipTakesItsCountFromTheBox)
{
    const std::pair<const char*, Calls> cases[]
        = { { "0", { "Skip Sentence 0" } }, { " -3", { "Skip Sentence -3" } },
              { "1.6", { "Skip Sentence 2" } }, { "40000", {} }, { "two", {} }, { "", {} } };
    for (const auto& [text, calls] : cases) {
        document->SkipTxtBox.Text = text;
        session.SkipBtn_Click();
        EXPECT_EQ(voice().take_calls(), calls) << text;
    }
}

TEST_F(Session, WithoutAVoiceTheHandlersDoWhatIsLeft)
{
    speech.Voice.release();
    session.PauseBtn_Click();
    EXPECT_EQ(state(), "idle paused");
    session.StopBtn_Click();
    EXPECT_EQ(state(), "idle paused");
    session.SkipBtn_Click();
    session.ResumeBtn_Click();
    EXPECT_EQ(state(), "idle");
}

} // namespace
} // namespace tessavox
