// Everything outside the program, for one test.
#pragma once

#include "forms/string_table.h"
#include "platform/controls/menu_item.h"
#include "platform/failure.h"
#include "platform/platform.h"
#include "tests/fakes/fake_pane.h"
#include "tests/fakes/recording_voice.h"

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tessavox {

struct FakeFiles : FileStore {
    std::string read(const std::string& path, std::size_t most_bytes = most_text_bytes) override;
    void write(const std::string& path, const std::string& bytes, Durability durability) override;
    WriteObstacle obstacle_to_writing(const std::string& path) override
    {
        return refused.contains(path) ? WriteObstacle::not_writable : WriteObstacle::none;
    }
    ReadObstacle obstacle_to_opening(const std::string&) override { return ReadObstacle::none; }

    std::map<std::string, std::string> files;
    std::set<std::string> refused{ "" }; // paths that can't be written
};

class FakeClipboard : public Clipboard {
public:
    TextSlice GetText(Patience patience) override
    {
        const bool at_hand = std::exchange(fetched, true) || patience == Patience::some;
        if (m_slice.view() != text)
            m_slice = text;
        return owner_answers && at_hand ? m_slice : TextSlice();
    }
    bool has_text() override { return owner_answers && !text.empty(); }
    void SetText(const TextSlice& wanted) override
    {
        text = wanted.view();
        owner_answers = true;
    }
    void Clear() override { SetText({}); }

    std::u16string text;
    bool owner_answers = true;
    bool fetched = true; // or else who doesn't wait gets nothing at first

private:
    TextSlice m_slice;
};

struct FakeChanges : OutsideChanges {
    void watch(const std::string&, Handler wanted) override { notice = std::move(wanted); }
    Handler notice;
};

struct FakeMessageBoxes : MessageBoxes {
    struct Box {
        std::string text;
        std::string title;
        MessageButtons buttons;
        MessageIcon icon;
        bool operator==(const Box&) const = default;
    };
    MessageAnswer show(const std::string& text, const std::string& title, MessageButtons buttons,
        MessageIcon icon) override;
    std::vector<Box> take_shown() { return std::exchange(shown, {}); }

    std::vector<Box> shown;
    std::deque<MessageAnswer> answers; // for boxes that ask; a question without one fails the test
    std::function<void()> while_shown; // what happens while a box is open
};

class FakeDialogs : public FileDialogs {
public:
    std::optional<std::string> ShowOpen(const FileDialogRequest& asked) override
    {
        return answer(asked);
    }
    std::optional<std::string> ShowSave(const FileDialogRequest& asked) override
    {
        return answer(asked);
    }

    std::vector<FileDialogRequest> requests;
    std::deque<std::optional<std::string>> answers; // a dialog without one fails the test
private:
    std::optional<std::string> answer(const FileDialogRequest& request);
};

struct FakeFontDialogs : FontDialogs {
    void ShowFont(FontChoice& choice) override
    {
        asked = choice;
        if (answer)
            choice = *answer;
    }

    FontChoice asked;
    std::optional<FontChoice> answer; // none: the user cancels
};

struct FakeArrangement : DocumentArrangement {
    void Arrange(Arrangement arrangement) override
    {
        asked += std::to_string(static_cast<int>(arrangement));
    }
    std::string asked;
};

struct FakeScreen : Screen {
    void set_MousePointer(MousePointer wanted) override { pointer = wanted; }
    double Width() const override { return 19200; }
    double Height() const override { return 15360; }
    double TwipsPerPixelX() const override { return 15; }
    double TwipsPerPixelY() const override { return 15; }
    PixelEdges work_area() const override { return { 0, 0, 1280, 984 }; }

    MousePointer pointer = MousePointer::normal;
};

struct FakeTray : Tray {
    void add(const std::string& tip, const MenuItem& menu) override
    {
        shown = tip + " " + menu.name();
    }
    void remove() override { shown.clear(); }
    bool has_icon() const override { return exists && !shown.empty(); }

    bool exists = true;
    std::string shown; // tip and menu
};

struct FakeHotKeys : HotKeys {
    bool RegisterHotKey(
        int id, unsigned modifiers, unsigned key_code, const std::string& name) override
    {
        calls += " +" + std::to_string(id) + ":" + std::to_string(modifiers) + ":"
            + std::to_string(key_code);
        names += name + ";";
        return !taken_elsewhere.contains(id);
    }
    void UnregisterHotKey(int id) override { calls += " -" + std::to_string(id); }

    std::set<int> taken_elsewhere;
    std::string calls;
    std::string names;
};

struct FakeShell : Shell {
    int open(const std::string& path) override
    {
        asked.push_back(path);
        return result;
    }
    void navigate(const std::string& address) override { asked.push_back(address); }

    std::vector<std::string> asked;
    int result = opened;
};

struct FakeSkin : Skin {
    void LoadSkin(const std::string& path) override { asked += path + " "; }
    void ApplySkin(Form& form) override { asked += form.name() + "; "; }

    std::string asked; // the files, each with the windows that were painted by it
};

/// Lets the work run to its end, or be ended by the user after a number of looks.
struct FakeBlockingWork : BlockingWork {
    bool wait(const std::string& text, const std::function<bool()>& is_done,
        const std::function<double()>& share) override;

    std::string shown; // the text of the last one
    int looks_until_escape = -1; // none
};

struct FakePanes : RichTextPanes {
    std::unique_ptr<RichTextPane> create() override { return std::make_unique<FakePane>(files); }
    FileStore* files = nullptr;
};

/// A pane whose page a test makes up: the calls that came, and what copying finds.
struct FakeWebPane : WebPane {
    void Navigate(const std::string& url) override { call("show " + url); }
    void GoBack() override { call("back"); }
    void GoForward() override { call("forward"); }
    void Stop() override { call("stop"); }
    void Refresh() override { call("refresh"); }
    void GoSearch() override { call("search"); }
    std::string LocationURL() const override { return location; }
    void ExecWB(WebCommand command) override;
    void call(const std::string& what);
    std::string take_calls() { return std::exchange(calls, {}); }

    FakeClipboard* clipboard = nullptr;
    std::string calls; // each followed by "; "
    std::string location;
    std::u16string text; // of the page
    std::u16string selected;
    bool is_missing = false;
};

struct FakeWebPanes : WebPanes {
    std::unique_ptr<WebPane> create() override
    {
        auto pane = std::make_unique<FakeWebPane>();
        pane->clipboard = clipboard;
        return pane;
    }
    FakeClipboard* clipboard = nullptr;
};

/// Keeps the text of the pages that came out, each job in brackets once it is ended.
struct FakePrinter : Printer {
    std::unique_ptr<PrintJob> begin(const std::string& title) override
    {
        printed += title + "[";
        return std::make_unique<FakePrintJob>(printed);
    }
    std::string printed;
};

/// What would lie in the folder of the copies, by title; and the files that were written over.
struct FakeRecovery : RecoveryCopies {
    std::unique_ptr<RecoveryCopy> create() override;

    std::map<std::string, std::u16string> kept;
    std::vector<std::string> foreign_files;
};

/// Gives the text that a test has for a path.
struct FakeWordProcessor : WordProcessor {
    std::u16string text_of(const std::string& path) override;

    std::map<std::string, std::u16string> texts;
    std::function<void()> while_reading;
};

/// Windows without a screen: each has a client area, and one control of all has the focus.
struct FakeWindows : FormWindows {
    std::unique_ptr<FormWindow> open(Form& form) override;
    void close(std::unique_ptr<FormWindow> window) override;

    Control* focused = nullptr;
    Form* in_front = nullptr;
    std::vector<Form*> open_forms;
    /// Whether it and, of a child, its parent are visible.
    bool is_on_screen(const Form& form) const;
    std::string popped_up; // the menu that was shown last
    PixelBox placed; // where a window was put last
    Stacking stacking = Stacking::not_topmost; // and how
    std::set<Form*> sized; // those that have been told their client size
};

struct FakePlatform {
    FakePlatform();
    /// Runs what was posted, and what that posts, until nothing is left.
    void run_posted();

    FakeWindows windows;
    std::deque<std::function<void()>> posted;
    bool has_quit = false;
    FakeFiles files;
    FakeClipboard clipboard;
    FakeChanges changes;
    FakeMessageBoxes boxes;
    FakeDialogs dialogs;
    FakeFontDialogs font_dialogs;
    FakeArrangement arrangement;
    FakeScreen screen;
    FakeTray tray;
    FakeHotKeys hot_keys;
    FakeShell shell;
    FakeSkin skin;
    FakeBlockingWork blocking_work;
    FakePanes panes;
    FakeWebPanes web_panes;
    FakePrinter printer;
    FakeRecovery recovery;
    FakeWordProcessor word_processor;
    RecordingSpeech speech;
    StringTable texts;
    Platform platform;
};

} // namespace tessavox
