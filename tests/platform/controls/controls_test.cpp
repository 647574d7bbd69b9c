#include "platform/controls/bars.h"
#include "platform/controls/buttons.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/label.h"
#include "platform/controls/menu_item.h"
#include "platform/controls/scroll_bar.h"
#include "platform/failure.h"
#include "tests/fakes/fake_platform.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace tessavox::tests {
namespace {

struct CountingView : ControlView {
    void control_changed() override { ++changes; }
    int changes = 0;
};

/// Something done to a control by code or, where it says so, by the user.
struct Step {
    std::function<void()> act;
    int value; // of the control afterwards
    int runs = 0; // of its handler meanwhile
    bool refused = false;
};

struct Controls : testing::Test {
    void check(const Property<int>& value, const std::vector<Step>& steps)
    {
        int number = 0;
        for (const Step& step : steps) {
            SCOPED_TRACE(++number);
            runs = 0;
            EXPECT_EQ(attempt(step.act), !step.refused);
            EXPECT_EQ(value, step.value);
            EXPECT_EQ(runs, step.runs);
        }
    }
    FakePlatform outside;
    Forms forms{ outside.windows, outside.platform.post, [] {} };
    Form form{ forms, "form", FormKind::dialog, 1000, 1000 };
    CountingView view;
    int runs = 0;
    Handler count = [this] { ++runs; };
};

TEST_F(Controls, ACheckBoxRunsItsHandlerForEachChangeWhoeverMakesIt)
{
    CheckBox box(form, "box");
    box.Click = count;
    box.set_view(&view);
    check(box.Value,
        {
            { [&] { box.Value = 1; }, 1, 1 },
            { [&] { box.Value = 1; }, 1 },
            { [&] { box.user_toggle(); }, 0, 1 },
            { [&] { box.Value = 2; }, 2, 1 },
            { [&] { box.Value = 3; }, 2, 0, true },
            { [&] { box.Value = -1; }, 2, 0, true },
        });
    EXPECT_EQ(view.changes, 3);
}

TEST_F(Controls, AListRunsItsHandlerForEachChoiceTheSameOneToo)
{
    ComboBox list(form, "list", ComboBoxStyle::list_only);
    for (const char* text : { "a", "b", "a" })
        list.AddItem(text);
    EXPECT_EQ(list.ListIndex, -1);
    list.Click = count;
    check(list.ListIndex,
        {
            { [&] { list.ListIndex = 1; }, 1, 1 },
            { [&] { list.ListIndex = 1; }, 1, 1 },
            { [&] { list.Text = "a"; }, 0, 1 },
            { [&] { list.Text = "A"; }, 0 },
            { [&] { list.Text = ""; }, 0 },
            { [&] { list.ListIndex = 3; }, 0, 0, true },
            { [&] { list.ListIndex = -2; }, 0, 0, true },
            { [&] { list.ListIndex = -1; }, -1 },
        });
    EXPECT_EQ(list.Text, "");
    EXPECT_THROW(list.ItemData(-1), Failure);
}

TEST_F(Controls, ATextTypedIntoAListIsNoChoice)
{
    ComboBox list(form, "list", ComboBoxStyle::editable);
    list.AddItem("a");
    list.Click = count;
    check(list.ListIndex,
        {
            { [&] { list.user_choose(0); }, 0, 1 },
            { [&] { list.user_edit("a.b"); }, -1 },
            { [&] { list.Text = "a"; }, -1 },
        });
    EXPECT_EQ(list.Text, "a");
}

TEST_F(Controls, AScrollBarRunsItsHandlerWhileItIsDraggedOnly)
{
    ScrollBar bar(form, "bar", { -10, 10, 1, 6 });
    bar.Scroll = count;
    check(bar.Value,
        {
            { [&] { bar.Value = -10; }, -10 },
            { [&] { bar.user_step(6); }, 6 },
            { [&] { bar.user_drag(6); }, 6, 1 },
            { [&] { bar.user_drag(99); }, 10, 1 },
            { [&] { bar.Value = 11; }, 10, 0, true },
            { [&] { bar.Value = -11; }, 10, 0, true },
        });
}

TEST_F(Controls, ATabStripRunsItsHandlerForAnotherTabAndForEachClick)
{
    TabStrip strip(form, "strip", { { "text", "Text" }, { "xml", "Web" } });
    strip.Click = count;
    check(strip.SelectedItem,
        {
            { [&] { strip.SelectedItem = 0; }, 0 },
            { [&] { strip.SelectedItem = 1; }, 1, 1 },
            { [&] { strip.SelectedItem = 2; }, 1, 0, true },
            { [&] { strip.user_select(1); }, 1, 1 }, // in front already
            { [&] { strip.user_select(0); }, 0, 1 },
            { [&] { strip.user_select(2); }, 0, 0, true },
        });
}

TEST_F(Controls, ADisabledButtonHasNoEffect)
{
    CommandButton button(form, "button");
    MenuItem item(form, "item");
    ToolBar bar(form, "bar", { { "New" }, {}, { "Old" } });
    button.Click = item.Click = count;
    bar.ButtonClick = [&](int index) { runs += index == 3; };
    for (const bool enabled : { false, true }) {
        for (Property<bool>* of : { &button.Enabled, &item.Enabled, &bar.Enabled })
            *of = enabled;
        runs = 0;
        button.user_press();
        item.user_choose();
        bar.user_press(3);
        EXPECT_EQ(runs, enabled ? 3 : 0);
    }
    bar.button(3).Enabled = false;
    bar.user_press(3);
    EXPECT_EQ(runs, 3);
    for (const int number : { 0, 4 })
        EXPECT_THROW(bar.user_press(number), Failure);
}

TEST_F(Controls, AStatusBarFindsPanelsByNumberAndKey)
{
    StatusBar bar(form, "bar", { { "Text", 100 }, { "Speed", 100 } });
    bar.PanelText(1) = "line";
    bar.PanelText("Speed") = "0";
    EXPECT_EQ(bar.PanelText("Text"), "line");
    EXPECT_EQ(bar.PanelText(2), "0");
    EXPECT_THROW(bar.PanelText(0), Failure);
    EXPECT_THROW(bar.PanelText(3), Failure);
    EXPECT_THROW(bar.PanelText("text"), Failure);
}

TEST_F(Controls, AMoveWithANegativeSizeLeavesTheControlAsItWas)
{
    Label label(form, "label");
    label.set_view(&view);
    label.Move(-5, 1, 2, 3);
    EXPECT_EQ(view.changes, 1);
    label.Move(-5, 1, 2, 3);
    EXPECT_EQ(view.changes, 1);
    EXPECT_THROW(label.Move(0, 0, -1, 3), Failure);
    EXPECT_THROW(label.Move(0, 0, 1, -3), Failure);
    EXPECT_EQ(label.Left(), -5);
    EXPECT_EQ(label.Height(), 3);
}

} // namespace
} // namespace tessavox::tests
