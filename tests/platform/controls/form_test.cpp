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
    Log& log;
    bool refuses = false;
};

struct FormLife : testing::Test {
    std::shared_ptr<LoggingForm> make(const char* name, FormKind kind)
    {
        return std::make_shared<LoggingForm>(forms, name, kind, log);
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

} // namespace
} // namespace tessavox::tests
