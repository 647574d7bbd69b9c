#include "platform/controls/bars.h"
#include "platform/controls/buttons.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/label.h"
#include "platform/controls/menu_item.h"
#include "platform/controls/scroll_bar.h"
#include "platform/failure.h"
#include "tests/fakes/fake_platform.h"

#include <gtest/gtest.h>

namespace tessavox::tests {
namespace {

struct CountingView : ControlView {
    void control_changed() override { ++changes; }
    int changes = 0;
};

struct Controls : testing::Test {
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
    box.Value = 1;
    EXPECT_EQ(runs, 1);
    box.Value = 1;
    EXPECT_EQ(runs, 1);
    box.user_toggle();
    EXPECT_EQ(runs, 2);
    box.Value = 2;
    EXPECT_EQ(box.Value, 2);
    box.Value = 0;
    EXPECT_EQ(view.changes, 4);
    EXPECT_THROW(box.Value = 3, Failure);
    EXPECT_THROW(box.Value = -1, Failure);
    EXPECT_EQ(box.Value, 0);
}

TEST_F(Controls, AListRunsItsHandlerForEachChoiceTheSameOneToo)
{
    ComboBox list(form, "list", ComboBoxStyle::list_only);
    list.AddItem("a");
    list.AddItem("b");
    list.AddItem("a");
    EXPECT_EQ(list.ListIndex, -1);
    list.Click = count;
    list.ListIndex = 1;
    list.ListIndex = 1;
    EXPECT_EQ(runs, 2);
    list.Text = "a";
    EXPECT_EQ(list.ListIndex, 0);
    EXPECT_EQ(runs, 3);
    list.Text = "A";
    list.Text = "";
    EXPECT_EQ(list.Text, "a");
    EXPECT_THROW(list.ListIndex = 3, Failure);
    EXPECT_THROW(list.ListIndex = -2, Failure);
    EXPECT_EQ(list.ListIndex, 0);
    list.ListIndex = -1;
    EXPECT_EQ(list.Text, "");
    EXPECT_EQ(runs, 3);
    EXPECT_THROW(list.ItemData(-1), Failure);
}

TEST_F(Controls, ATextTypedIntoAListIsNoChoice)
{
    ComboBox list(form, "list", ComboBoxStyle::editable);
    list.AddItem("a");
    list.Click = count;
    list.user_choose(0);
    EXPECT_EQ(list.Text, "a");
    list.user_edit("a.b");
    EXPECT_EQ(list.ListIndex, -1);
    list.Text = "a";
    EXPECT_EQ(list.ListIndex, -1);
    EXPECT_EQ(runs, 1);
}

TEST_F(Controls, AScrollBarRunsItsHandlerWhileItIsDraggedOnly)
{
    ScrollBar bar(form, "bar", { -10, 10, 1, 6 });
    EXPECT_EQ(bar.Value, 0);
    bar.Scroll = count;
    bar.Value = -10;
    bar.Value = 5;
    bar.user_step(6);
    EXPECT_EQ(runs, 0);
    bar.user_drag(6);
    EXPECT_EQ(runs, 1);
    bar.user_drag(99);
    EXPECT_EQ(bar.Value, 10);
    EXPECT_THROW(bar.Value = 11, Failure);
    EXPECT_THROW(bar.Value = -11, Failure);
    EXPECT_EQ(bar.Value, 10);
}

TEST_F(Controls, ADisabledButtonHasNoEffect)
{
    CommandButton button(form, "button");
    MenuItem item(form, "item");
    ToolBar bar(form, "bar", { { "New" }, {}, { "Old" } });
    button.Click = item.Click = count;
    int pressed = 0;
    bar.ButtonClick = [&](int index) { pressed = index; };
    button.Enabled = false;
    item.Enabled = false;
    button.user_press();
    item.user_choose();
    EXPECT_EQ(runs, 0);
    button.Enabled = true;
    item.Enabled = true;
    button.user_press();
    item.user_choose();
    EXPECT_EQ(runs, 2);
    bar.user_press(3);
    EXPECT_EQ(pressed, 3);
    bar.button(1).Enabled = false;
    bar.user_press(1);
    EXPECT_THROW(bar.user_press(0), Failure);
    bar.Enabled = false;
    bar.user_press(3);
    EXPECT_EQ(pressed, 3);
    EXPECT_THROW(bar.button(4), Failure);
}

TEST_F(Controls, ATabStripRunsItsHandlerForAnotherTabAndForEachClick)
{
    TabStrip strip(form, "strip", { { "text", "Text" }, { "xml", "Web" } });
    strip.Click = count;
    strip.SelectedItem = 0;
    EXPECT_EQ(runs, 0);
    strip.SelectedItem = 1;
    EXPECT_EQ(runs, 1);
    EXPECT_THROW(strip.SelectedItem = 2, Failure);
    strip.user_select(1); // in front already
    EXPECT_EQ(runs, 2);
    strip.user_select(0);
    EXPECT_EQ(strip.SelectedItem, 0);
    EXPECT_EQ(runs, 3);
    EXPECT_THROW(strip.user_select(2), Failure);
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
