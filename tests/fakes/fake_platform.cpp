#include "tests/fakes/fake_platform.h"

#include "platform/failure.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tessavox {

namespace {

constexpr double client_width = 12000; // twips, of every window
constexpr double client_height = 9000;

class FakeWindow : public FormWindow, public ControlView {
public:
    FakeWindow(FakeWindows& windows, Form& form)
        : m_windows(windows)
        , m_form(form)
    {
        m_form.set_view(this);
    }
    Form& form() { return m_form; }

    void focus(Control& control) override
    {
        if (!m_windows.is_on_screen(m_form))
            throw Failure("a hidden window can't have the focus");
        m_windows.focused = &control;
    }
    void bring_forward() override { m_windows.in_front = &m_form; }
    void SetWindowPos(Stacking stacking, const PixelBox& box) override
    {
        m_windows.stacking = stacking;
        m_windows.placed = box;
        m_form.placed(15.0 * box.left, 15.0 * box.top, 15.0 * box.width, 15.0 * box.height);
    }
    void PopupMenu(const MenuItem& menu) override { m_windows.popped_up = menu.name(); }
    void control_changed() override
    {
        const auto forms = m_windows.open_forms;
        for (Form* form : forms) { // a child comes on the screen with its parent
            if (m_windows.is_on_screen(*form) && m_windows.sized.insert(form).second)
                form->client_resized(client_width, client_height);
        }
    }

private:
    FakeWindows& m_windows;
    Form& m_form;
};

} // namespace

std::string FakeFiles::read(const std::string& path, std::size_t most_bytes)
{
    const auto found = files.find(path);
    if (found == files.end() || found->second.size() > most_bytes)
        throw Failure("there is no such " + path);
    return found->second;
}

void FakeFiles::write(const std::string& path, const std::string& bytes, Durability)
{
    if (refused.contains(path))
        throw Failure(path + " can't be written");
    files[path] = bytes;
}

MessageAnswer FakeMessageBoxes::show(
    const std::string& text, const std::string& title, MessageButtons buttons, MessageIcon icon)
{
    shown.push_back({ text, title, buttons, icon });
    if (while_shown)
        while_shown();
    if (buttons == MessageButtons::ok)
        return MessageAnswer::ok;
    if (answers.empty()) {
        ADD_FAILURE() << "nobody expected the question: " << text;
        return MessageAnswer::cancel;
    }
    const MessageAnswer answer = answers.front();
    answers.pop_front();
    return answer;
}

std::optional<std::string> FakeDialogs::answer(const FileDialogRequest& request)
{
    requests.push_back(request);
    if (answers.empty()) {
        ADD_FAILURE() << "nobody expected the dialog " << request.DialogTitle;
        return std::nullopt;
    }
    const auto answer = answers.front();
    answers.pop_front();
    return answer;
}

std::unique_ptr<FormWindow> FakeWindows::open(Form& form)
{
    open_forms.push_back(&form);
    return std::make_unique<FakeWindow>(*this, form);
}

void FakeWindows::close(std::unique_ptr<FormWindow> window)
{
    Form* const form = &static_cast<FakeWindow&>(*window).form();
    std::erase(open_forms, form);
    sized.erase(form);
    // The area of the documents brings another one forward by itself.
    const auto next = std::find_if(open_forms.rbegin(), open_forms.rend(),
        [](const Form* other) { return other->kind() == FormKind::mdi_child; });
    if (form->kind() == FormKind::mdi_child && next != open_forms.rend())
        (*next)->user_activated();
}

bool FakeWindows::is_on_screen(const Form& form) const
{
    const auto is_hidden_parent = [](const Form* other) {
        return other->kind() == FormKind::mdi_parent && !other->Visible;
    };
    return form.Visible
        && (form.kind() != FormKind::mdi_child
            || std::none_of(open_forms.begin(), open_forms.end(), is_hidden_parent));
}

bool FakeBlockingWork::wait(const std::string& text, const std::function<bool()>& is_done,
    const std::function<double()>& share)
{
    shown = text;
    for (int looks = 0; !is_done(); ++looks) {
        share();
        if (looks == looks_until_escape)
            return false;
    }
    return true;
}

void FakeWebPane::call(const std::string& what)
{
    if (is_missing)
        throw Failure("no pages here");
    calls += what + "; ";
}

void FakeWebPane::ExecWB(WebCommand command)
{
    call(std::to_string(static_cast<int>(command)));
    if (command == WebCommand::select_all)
        selected = text;
    else if (command == WebCommand::copy && !selected.empty())
        clipboard->text = selected;
}

std::unique_ptr<RecoveryCopy> FakeRecovery::create()
{
    struct Copy : RecoveryCopy {
        void keep(const std::string& title, const TextSlice& text) override
        {
            if (text.empty())
                return;
            drop();
            all->kept[name = title] = text.view();
        }
        void drop() override { all->kept.erase(name); }
        void note_file(const std::string& path) override { noted = path; }
        void keep_foreign_file(const std::string& path) override
        {
            if (path != noted)
                all->foreign_files.push_back(path);
        }
        FakeRecovery* all = nullptr;
        std::string name, noted;
    };
    auto copy = std::make_unique<Copy>();
    copy->all = this;
    return copy;
}

std::u16string FakeWordProcessor::text_of(const std::string& path)
{
    if (while_reading)
        while_reading();
    if (!texts.contains(path))
        throw Failure("nothing reads " + path);
    return texts[path];
}

FakePlatform::FakePlatform()
    : platform{ windows, [this](std::function<void()> call) { posted.push_back(std::move(call)); },
        [this] { has_quit = true; }, [] {}, files, clipboard, changes, boxes, dialogs, font_dialogs,
        arrangement, screen, tray, hot_keys, shell, skin, blocking_work, panes, web_panes, printer,
        recovery, word_processor, speech, texts, "/home/conf", "/app", {} }
{
    panes.files = &files;
    web_panes.clipboard = &clipboard;
}

void FakePlatform::run_posted()
{
    while (!posted.empty()) {
        const auto call = std::move(posted.front());
        posted.pop_front();
        call();
    }
}

} // namespace tessavox
