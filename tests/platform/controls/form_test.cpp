#include "platform/controls/containers.h"
#include "platform/controls/text_box.h"
#include "platform/failure.h"
#include "tests/fakes/fake_platform.h"

#include <gtest/gtest.h>

namespace tessavox::tests {
namespace {

using Log = std::vector<std::string>;

struct LoggingForm : Form {
    LoggingForm(Forms& forms, std::string name, FormKind kind, Log& events)
        : Form(forms, std::move(name), kind, 1000, 1000)
        , log(events)
    {
    }
    void Form_Load() override { log.push_back(name() + " load"); }
    void Form_Activate() override { log.push_back(name() + " activate"); }
    void Form_Resize() override { log.push_back(name() + " resize"); }
    void Form_Unload(bool& Cancel) override
    {
        log.push_back(name() + " unload");
        Cancel = refuses;
    }
    PictureBox box{ *this, "box" };
    TextBox text{ *this, "text" };
    Log& log;
    bool refuses = false;
};

struct FormLife : testing::Test {
    std::shared_ptr<LoggingForm> make(const char* name, FormKind kind)
    {
        auto form = std::make_shared<LoggingForm>(forms, name, kind, log);
        form->text.set_container(&form->box);
        return form;
    }
    std::shared_ptr<LoggingForm> shown_parent()
    {
        auto parent = make("parent", FormKind::mdi_parent);
        parent->Show();
        log.clear();
        return parent;
    }
    Log take_log() { return std::exchange(log, {}); }

    FakePlatform outside;
    Log log;
    bool all_gone = false;
    Forms forms{ outside.windows, outside.platform.post, [this] { all_gone = true; } };
};

TEST_F(FormLife, AChildIsShownAndActiveRightAfterItsLoad)
{
    const auto parent = shown_parent();
    const auto child = make("child", FormKind::mdi_child);
    child->Load();
    child->Load();
    EXPECT_EQ(take_log(), (Log{ "child load", "child resize", "child activate" }));
    EXPECT_EQ(forms.active_child(), child.get());
    child->user_activated();
    EXPECT_EQ(take_log(), Log{});
}

TEST_F(FormLife, AChildWaitsForTheFirstShowOfItsParent)
{
    const auto parent = make("parent", FormKind::mdi_parent);
    parent->Load();
    const auto child = make("child", FormKind::mdi_child);
    child->Load();
    EXPECT_EQ(forms.active_child(), child.get());
    EXPECT_EQ(take_log(), (Log{ "parent load", "child load" }));
    parent->Show();
    EXPECT_EQ(take_log(), (Log{ "parent resize", "child resize", "child activate" }));
    parent->Hide();
    parent->Show();
    EXPECT_EQ(take_log(), Log{});
}

TEST_F(FormLife, ClosingTheActiveChildActivatesTheOneLoadedLast)
{
    const auto parent = shown_parent();
    const auto a = make("a", FormKind::mdi_child);
    const auto b = make("b", FormKind::mdi_child);
    const auto c = make("c", FormKind::mdi_child);
    for (const auto& child : { a, b, c })
        child->Load();
    a->user_activated();
    log.clear();
    EXPECT_TRUE(a->user_closed());
    EXPECT_EQ(take_log(), (Log{ "a unload", "c activate" }));
    EXPECT_TRUE(b->user_closed());
    EXPECT_EQ(take_log(), (Log{ "b unload" }));
}

TEST_F(FormLife, AParentAsksItsChildrenFirstAndOneCanCancel)
{
    const auto parent = shown_parent();
    const auto a = make("a", FormKind::mdi_child);
    const auto b = make("b", FormKind::mdi_child);
    a->Load();
    b->Load();
    b->refuses = true;
    log.clear();
    EXPECT_FALSE(parent->Unload());
    EXPECT_EQ(take_log(), (Log{ "a unload", "b unload" }));
    EXPECT_TRUE(parent->is_loaded() && b->is_loaded() && !a->is_loaded());
    b->refuses = false;
    EXPECT_TRUE(parent->Unload());
    EXPECT_EQ(take_log(), (Log{ "b unload", "parent unload" }));
    EXPECT_TRUE(all_gone);
}

TEST_F(FormLife, AFormOutlivesTheHandlerInWhichItUnloads)
{
    auto form = make("form", FormKind::dialog);
    form->Show();
    const std::weak_ptr<LoggingForm> watched = form;
    LoggingForm* const raw = form.get();
    form = nullptr;
    raw->Unload();
    EXPECT_FALSE(watched.expired());
    outside.run_posted();
    EXPECT_TRUE(watched.expired());
}

TEST_F(FormLife, TheFocusGoesOnlyToWhatIsShown)
{
    const auto form = make("form", FormKind::dialog);
    EXPECT_THROW(form->text.SetFocus(), Failure);
    form->Load();
    EXPECT_THROW(form->text.SetFocus(), Failure);
    form->Show();
    form->text.SetFocus();
    EXPECT_EQ(outside.windows.focused, &form->text);
    form->box.Visible = false;
    EXPECT_THROW(form->text.SetFocus(), Failure);
    form->box.Visible = true;
    form->text.Enabled = false;
    EXPECT_THROW(form->text.SetFocus(), Failure);
}

} // namespace
} // namespace tessavox::tests
