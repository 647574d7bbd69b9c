// Everything outside the program, for one test.
#pragma once

#include "forms/string_table.h"
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

class FakeFiles : public FileStore {
public:
    std::string read(const std::string& path) override;
    void write(const std::string& path, const std::string& bytes, Durability durability) override;
    WriteObstacle obstacle_to_writing(const std::string& path) override
    {
        return is_refused(path) ? WriteObstacle::not_writable : WriteObstacle::none;
    }
    /// The n-th call from now on, reads and writes counted together from 1, fails.
    void fail_call(int n) { m_calls_until_failure = n; }

    std::map<std::string, std::string> files;
    std::set<std::string> refused; // paths that can't be written

private:
    bool is_refused(const std::string& path) const
    {
        return refused.contains(path) || path.empty();
    }
    void count_call();
    int m_calls_until_failure = 0;
};

class FakeClipboard : public Clipboard {
public:
    TextSlice GetText(Patience patience) override
    {
        const bool at_hand = std::exchange(fetched, true) || patience == Patience::some;
        return owner_answers && at_hand ? text : std::u16string();
    }
    bool has_text() override { return owner_answers && !text.empty(); }
    void SetText(std::u16string_view wanted) override
    {
        text = wanted;
        owner_answers = true;
    }
    void Clear() override { SetText({}); }

    std::u16string text;
    bool owner_answers = true;
    bool fetched = true; // or else who doesn't wait gets nothing at first
};

class FakeChanges : public OutsideChanges {
public:
    void watch(const std::string&, Handler wanted) override { notice = std::move(wanted); }
    Handler notice;
};

class FakeMessageBoxes : public MessageBoxes {
public:
    struct Box {
        std::string text;
        std::string title;
        MessageButtons buttons;
        MessageIcon icon;
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
    std::optional<std::string> ShowOpen(const FileDialogRequest& request) override;
    std::optional<std::string> ShowSave(const FileDialogRequest& request) override;

    std::vector<FileDialogRequest> requests;
    std::deque<std::optional<std::string>> answers; // a dialog without one fails the test
private:
    std::optional<std::string> answer(const FileDialogRequest& request);
};

class FakeScreen : public Screen {
public:
    void set_MousePointer(MousePointer wanted) override { pointer = wanted; }
    MousePointer pointer = MousePointer::normal;
};

class FakeTray : public Tray {
public:
    bool has_icon() const override { return icon; }
    bool icon = false;
};

/// Lets the work run to its end, or be ended by the user after a number of looks.
class FakeBlockingWork : public BlockingWork {
public:
    bool wait(const std::string& text, const std::function<bool()>& is_done,
        const std::function<double()>& share) override;

    std::string shown; // the text of the last one
    double seen_share = -1; // at the last look
    int looks_until_escape = -1; // none
};

class FakePanes : public RichTextPanes {
public:
    explicit FakePanes(FileStore& files)
        : m_files(files)
    {
    }
    std::unique_ptr<RichTextPane> create() override { return std::make_unique<FakePane>(&m_files); }

private:
    FileStore& m_files;
};

/// Windows without a screen: each has a client area, and one control of all has the focus.
class FakeWindows : public FormWindows {
public:
    std::unique_ptr<FormWindow> open(Form& form) override;
    void close(std::unique_ptr<FormWindow> window) override;

    double client_width = 12000; // twips, of every window
    double client_height = 9000;
    Control* focused = nullptr;
    Form* in_front = nullptr;
    std::vector<Form*> open_forms;
    /// Whether it and, of a child, its parent are visible.
    bool is_on_screen(const Form& form) const;
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
    FakeScreen screen;
    FakeTray tray;
    FakeBlockingWork blocking_work;
    FakePanes panes{ files };
    RecordingSpeech speech;
    StringTable texts;
    Platform platform;
};

} // namespace tessavox
