#include "tests/contract/blocking_work_contract.h"
#include "tests/contract/clipboard_contract.h"
#include "tests/contract/dialogs_contract.h"
#include "tests/contract/file_store_contract.h"
#include "tests/contract/form_windows_contract.h"
#include "tests/contract/recovery_copies_contract.h"
#include "tests/contract/rich_text_pane_contract.h"
#include "tests/contract/speech_voice_contract.h"
#include "tests/fakes/fake_platform.h"

namespace tessavox {
namespace {

/// With all of the platform, of which a contract needs a part.
struct FakeBed : FakePlatform {
    std::string path(const std::string& name) const { return "/folder/" + name; }
    void settle() { run_posted(); }
};

struct FakePaneBed : FakeBed {
    RichTextPane& pane() { return fake; }
    void user_types(const std::u16string& text) { fake.user_types(text); }
    void user_selects(std::int32_t start, std::int32_t length) { fake.user_selects(start, length); }
    FileStore& files() { return FakePlatform::files; }
    FakePane fake{ &files() };
};

struct FakeFilesBed : FakeBed {
    FileStore& store() { return files; }
};

struct FakeClipboardBed : FakeBed {
    Clipboard& clipboard() { return FakePlatform::clipboard; }
    void other_copies(const std::u16string& text)
    {
        FakePlatform::clipboard.text = text;
        FakePlatform::clipboard.owner_answers = true;
    }
    void other_copies_a_picture() { other_copies(u""); }
    void other_holds_back(const std::u16string& text)
    {
        FakePlatform::clipboard.text = text;
        FakePlatform::clipboard.owner_answers = false;
    }
    void other_gives() { FakePlatform::clipboard.owner_answers = true; }
};

struct FakeDialogsBed : FakeBed {
    MessageBoxes& boxes() { return FakePlatform::boxes; }
    FileDialogs& dialogs() { return FakePlatform::dialogs; }
    void user_presses(MessageAnswer answer) { FakePlatform::boxes.answers.push_back(answer); }
    void user_closes() { user_presses(MessageAnswer::cancel); }
    void user_chooses(const std::string& name)
    {
        FakePlatform::dialogs.answers.emplace_back(path(name));
    }
    void user_cancels() { FakePlatform::dialogs.answers.emplace_back(); }
};

struct FakeBlockingWorkBed : FakeBed {
    BlockingWork& work() { return blocking_work; }
    void user_wants_an_end() { blocking_work.looks_until_escape = 0; }
};

struct FakeRecoveryBed : FakeBed {
    RecoveryCopies& copies() { return recovery; }
    std::vector<std::u16string> kept() const
    {
        std::vector<std::u16string> texts;
        for (const auto& [title, text] : recovery.kept)
            texts.push_back(text);
        return texts;
    }
    std::size_t foreign_files() const { return recovery.foreign_files.size(); }
};

struct FakeWindowsBed : FakeBed {
    FormWindows& windows() { return FakePlatform::windows; }
    void post(std::function<void()> call) { posted.push_back(std::move(call)); }
};

struct RecordingBed : FakeBed {
    SpeechService& service() { return speech; }
    SpeechVoiceEvents& events() { return listener; }
    SpeechVoiceEvents listener;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, RecoveryCopiesContract, FakeRecoveryBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, BlockingWorkContract, FakeBlockingWorkBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FormWindowsContract, FakeWindowsBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, DialogsContract, FakeDialogsBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ClipboardContract, FakeClipboardBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, RichTextPaneContract, FakePaneBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FileStoreContract, FakeFilesBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SpeechVoiceContract, RecordingBed);

} // namespace
} // namespace tessavox
