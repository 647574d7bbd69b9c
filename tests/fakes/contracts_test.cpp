#include "tests/contract/blocking_work_contract.h"
#include "tests/contract/clipboard_contract.h"
#include "tests/contract/dialogs_contract.h"
#include "tests/contract/file_store_contract.h"
#include "tests/contract/form_windows_contract.h"
#include "tests/contract/recovery_copies_contract.h"
#include "tests/contract/rich_text_pane_contract.h"
#include "tests/fakes/fake_platform.h"

namespace tessavox {
namespace {

class FakePaneBed {
public:
    RichTextPane& pane() { return m_pane; }
    void user_types(const std::u16string& text) { m_pane.user_types(text); }
    void user_selects(std::int32_t start, std::int32_t length)
    {
        m_pane.user_selects(start, length);
    }
    FileStore& files() { return m_files; }
    std::string path(const std::string& name) const { return "/folder/" + name; }

private:
    FakeFiles m_files;
    FakePane m_pane{ &m_files };
};

class FakeFilesBed {
public:
    FileStore& store() { return m_files; }
    std::string path(const std::string& name) const { return "/folder/" + name; }
    std::string fixed_path()
    {
        m_files.refused.insert("/fixed");
        return "/fixed";
    }

private:
    FakeFiles m_files;
};

class FakeClipboardBed {
public:
    Clipboard& clipboard() { return m_clipboard; }
    void other_copies(const std::u16string& text)
    {
        m_clipboard.text = text;
        m_clipboard.owner_answers = true;
    }
    void other_copies_a_picture() { other_copies(u""); }
    void other_holds_back(const std::u16string& text)
    {
        m_clipboard.text = text;
        m_clipboard.owner_answers = false;
    }
    void other_gives() { m_clipboard.owner_answers = true; }
    void settle() { }

private:
    FakeClipboard m_clipboard;
};

class FakeDialogsBed {
public:
    MessageBoxes& boxes() { return m_boxes; }
    FileDialogs& dialogs() { return m_dialogs; }
    std::string path(const std::string& name) const { return "/folder/" + name; }
    void user_presses(MessageAnswer answer) { m_boxes.answers.push_back(answer); }
    void user_closes() { m_boxes.answers.push_back(MessageAnswer::cancel); }
    void user_chooses(const std::string& name) { m_dialogs.answers.emplace_back(path(name)); }
    void user_cancels() { m_dialogs.answers.emplace_back(); }

private:
    FakeMessageBoxes m_boxes;
    FakeDialogs m_dialogs;
};

class FakeBlockingWorkBed {
public:
    BlockingWork& work() { return m_work; }
    void user_wants_an_end() { m_work.looks_until_escape = 0; }

private:
    FakeBlockingWork m_work;
};

class FakeRecoveryBed {
public:
    RecoveryCopies& copies() { return m_recovery; }
    std::vector<std::u16string> kept() const
    {
        std::vector<std::u16string> texts;
        for (const auto& [title, text] : m_recovery.kept)
            texts.push_back(text);
        return texts;
    }
    std::string path(const std::string& name) const { return "/folder/" + name; }
    std::size_t foreign_files() const { return m_recovery.foreign_files.size(); }

private:
    FakeRecovery m_recovery;
};

class FakeWindowsBed {
public:
    FormWindows& windows() { return m_windows; }
    void post(std::function<void()> call) { m_posted.push_back(std::move(call)); }
    void settle()
    {
        for (; !m_posted.empty(); m_posted.pop_front())
            m_posted.front()();
    }

private:
    FakeWindows m_windows;
    std::deque<std::function<void()>> m_posted;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, RecoveryCopiesContract, FakeRecoveryBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, BlockingWorkContract, FakeBlockingWorkBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FormWindowsContract, FakeWindowsBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, DialogsContract, FakeDialogsBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ClipboardContract, FakeClipboardBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, RichTextPaneContract, FakePaneBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FileStoreContract, FakeFilesBed);

} // namespace
} // namespace tessavox
