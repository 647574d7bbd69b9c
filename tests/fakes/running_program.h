// The whole program on a fake platform.
#pragma once

#include "app/main_window.h"
#include "tests/fakes/fake_platform.h"

#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <sstream>
#include <string>

namespace tessavox {

inline std::vector<std::string> words_of(const std::string& text)
{
    std::istringstream stream(text);
    return { std::istream_iterator<std::string>(stream), {} };
}

/// A settings file as a user's folder holds it: each data line in its place.
inline std::string file_of_lines(std::initializer_list<const char*> lines)
{
    std::string bytes = "\"\r\n";
    for (const char* line : lines)
        bytes += std::string(line) + "\r\n";
    return bytes + "\"\r\n";
}

struct UserFiles : FakePlatform {
    UserFiles()
    {
        file("opened.txt") = file_of_lines({ "1" });
        file("setting1.txt")
            = file_of_lines({ "48kHz 16Bit Stereo", " 0", " 0", " 1", "http://a.example/" });
        file("setting2.txt") = file_of_lines({ "Comic Sans MS", " 12", "False" });
        file("setting3.txt") = file_of_lines({});
        files.files["/app/first.txt"] = "Hello world.";
    }
    std::string& file(const std::string& name) { return files.files["/home/conf//" + name]; }
};

/// The program with its main window, as Main makes it.
struct RunningProgram : UserFiles {
    void start(bool hidden = false)
    {
        process.find_ConfigFolder();
        main.Load();
        if (!hidden)
            main.Show();
        for (const auto& record : speech.records)
            record->take_calls();
    }
    // What the user does
    void type(const std::u16string& text) { pane().user_types(text); }
    void show(const std::u16string& text, std::int32_t start = 0, std::int32_t length = 0)
    {
        pane().set_Text(text);
        pane().user_selects(start, length);
    }
    void open(const std::string& path)
    {
        dialogs.answers = { path };
        main.mnuFileOpen.run();
    }
    void save_as(const std::string& path)
    {
        dialogs.answers = { path };
        main.mnuFileSaveAs.run();
    }
    /// Presses the button, or chooses the item of a menu, of the main window or the document in
    /// front; "tbToolBar.1" is a button of the tool bar, "bar.StopBtn" one of the dock bar.
    void press(const std::string& name)
    {
        if (name.starts_with("tbToolBar."))
            return main.tbToolBar.user_press(name.back() - '0');
        const std::string bar = "bar.";
        const bool in_bar = name.starts_with(bar);
        for (const Form* form :
            std::initializer_list<const Form*>{ &main, &document(), window("frmDockDemo") }) {
            if (!form || in_bar != (form->name() == "frmDockDemo"))
                continue;
            for (Control* control : form->controls()) {
                if (control->name() != name.substr(in_bar ? bar.size() : 0))
                    continue;
                if (auto* item = dynamic_cast<MenuItem*>(control))
                    return item->user_choose();
                return dynamic_cast<CommandButton&>(*control).user_press();
            }
        }
        FAIL() << "no control " << name;
    }

    // What there is to see
    /// The window of that name; null if it isn't open.
    template <class Window = Form> Window* window(const std::string& name)
    {
        for (Form* form : windows.open_forms) {
            if (form->name() == name)
                return static_cast<Window*>(form);
        }
        return nullptr;
    }
    frmDocument& document() { return main.ActiveForm(); }
    frmDocument& open_another()
    {
        main.mnuFileNew.run();
        return document();
    }
    FakeWebPane& page() { return static_cast<FakeWebPane&>(document().WebBrowser1.pane()); }
    FakePane& pane() { return static_cast<FakePane&>(document().rtfText.pane()); }
    std::string text() { return to_utf8(pane().Text().view()); }
    std::string selected() { return to_utf8(pane().SelText().view()); }
    bool changed()
    {
        return process.tables.documentChanged[main.file_commands.ActiveDocumentIndex()];
    }
    std::string panel(int number) { return main.sbStatusBar.PanelText(number); }
    VoiceRecord& voice(std::size_t index = 0) { return speech.voice(index); }
    /// What was asked of the voice since the last look.
    std::string asked(std::size_t index = 0)
    {
        std::string all;
        for (const std::string& call : voice(index).take_calls())
            all += (all.empty() ? "" : "; ") + call;
        return all;
    }
    /// "idle", "speaking", each perhaps with " paused".
    static std::string state_of(const SpeechSession& session)
    {
        return std::string(session.m_bSpeaking() ? "speaking" : "idle")
            + (session.m_bPaused() ? " paused" : "");
    }
    std::string state() { return state_of(document().speech.session); }

    Process process{ platform };
    std::shared_ptr<frmMain> main_form = std::make_shared<frmMain>(process);
    frmMain& main = *main_form;
};

struct StartedProgram : RunningProgram {
    StartedProgram() { start(); }
};

struct ProgramTest : testing::Test, RunningProgram { };
struct StartedProgramTest : testing::Test, StartedProgram { };

/// What a window's controls say: "name" whether it is enabled, "name:Visible", "name:Caption"; of a
/// tool bar also its buttons, "name.1" on.
using States = std::map<std::string, std::string>;

inline const char* word(bool value)
{
    return value ? "on" : "off";
}

/// Goes over what can be enabled in a window, by name.
inline void each_enabled(
    const Form& form, const std::function<void(const std::string&, Property<bool>&)>& look)
{
    for (Control* control : form.controls()) {
        look(control->name(), control->Enabled);
        if (auto* const bar = dynamic_cast<ToolBar*>(control)) {
            for (int i = 1; i <= static_cast<int>(bar->Buttons().size()); ++i)
                look(bar->name() + "." + std::to_string(i), bar->button(i).Enabled);
        }
    }
}

inline States states_of(const Form& form)
{
    States states;
    each_enabled(form,
        [&](const std::string& name, Property<bool>& enabled) { states[name] = word(enabled); });
    for (const Control* control : form.controls()) {
        states[control->name() + ":Visible"] = word(control->Visible);
        states[control->name() + ":Caption"] = control->Caption;
    }
    return states;
}

/// The same, with another value for some.
inline States with(States states, const std::string& names, const std::string& value)
{
    for (const std::string& name : words_of(names)) {
        EXPECT_TRUE(states.contains(name)) << name;
        states[name] = value;
    }
    return states;
}

inline void enable_all(const Form& form, bool value)
{
    each_enabled(form, [&](const std::string&, Property<bool>& enabled) { enabled = value; });
}

} // namespace tessavox
