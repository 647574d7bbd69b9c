#include "tests/platform/qt/demo_form.h"

#include "platform/failure.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>
#include <QToolBar>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace tessavox {
namespace {

struct Views : testing::Test {
    Handler count()
    {
        return [this] { ++handled; };
    }

    DemoDesktop desktop;
    std::shared_ptr<DemoChild> form = desktop.open();
    int handled = 0;
};

TEST_F(Views, AButtonRunsItsHandlerOncePerPressOfMouseOrKey)
{
    form->button.Click = count();
    auto& button = desktop.find<QPushButton>("SpeakBtn");
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(handled, 1);
    QTest::keyClick(&button, Qt::Key_Space);
    QTest::keyClick(&button, Qt::Key_Return);
    EXPECT_EQ(handled, 3);
    form->button.Enabled = false;
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(handled, 3);
    form->button.Visible = false;
    EXPECT_FALSE(button.isVisible());
}

TEST_F(Views, AFailureOfAHandlerEndsWithThatHandler)
{
    form->button.Click = [] { throw Failure("no voice"); };
    QTest::mouseClick(&desktop.find<QPushButton>("SpeakBtn"), Qt::LeftButton);
}

TEST_F(Views, ACheckBoxChangesInBothDirections)
{
    form->check.Click = count();
    auto& box = desktop.find<QCheckBox>("check");
    form->check.Value = 1;
    EXPECT_TRUE(box.isChecked());
    EXPECT_EQ(handled, 1); // the control's own rule, and not once more from the widget
    box.click();
    EXPECT_EQ(form->check.Value, 0);
    EXPECT_EQ(handled, 2);
    box.toggle(); // as assistive technologies do
    EXPECT_EQ(form->check.Value, 1);
    EXPECT_EQ(handled, 3);
    form->check.Value = 2;
    EXPECT_EQ(box.checkState(), Qt::PartiallyChecked);
}

TEST_F(Views, AListTellsOfTheUsersChoiceAlsoOfTheSameEntry)
{
    auto& box = desktop.find<QComboBox>("combo");
    for (int i = 0; i < 150; ++i)
        form->combo.AddItem("Voice " + std::to_string(i));
    EXPECT_EQ(box.count(), 150);
    form->combo.Click = count();
    form->combo.ListIndex = 7;
    EXPECT_EQ(box.currentIndex(), 7);
    const std::pair<Qt::Key, int> rows[] = { { Qt::Key_Down, 8 }, { Qt::Key_Up, 7 },
        { Qt::Key_End, 149 }, { Qt::Key_Home, 0 }, { Qt::Key_PageDown, 19 } };
    for (const auto& [key, index] : rows) {
        QTest::keyClick(&box, key);
        EXPECT_EQ(form->combo.ListIndex, index);
    }
    for (int times = 0; times < 2; ++times)
        emit box.activated(77);
    EXPECT_EQ(form->combo.ListIndex, 77);
    EXPECT_EQ(handled, 8); // the control's own rule, and not once more from the widget
    form->combo.ListIndex = -1;
    EXPECT_EQ(box.currentIndex(), -1);
}

TEST_F(Views, OnlyDraggingTheThumbScrolls)
{
    form->slider.Scroll = count();
    auto& bar = desktop.find<QScrollBar>("slider");
    EXPECT_EQ(bar.minimum(), -10);
    const std::tuple<Qt::Key, int, int> rows[]
        = { { Qt::Key_Right, 1, -1 }, { Qt::Key_Left, -1, 1 }, { Qt::Key_Down, 1, 1 },
              { Qt::Key_Up, -1, -1 }, { Qt::Key_PageDown, 6, 6 }, { Qt::Key_PageUp, -6, -6 },
              { Qt::Key_Home, -10, -10 }, { Qt::Key_End, 10, 10 } };
    for (const auto direction : { Qt::LeftToRight, Qt::RightToLeft }) {
        bar.setLayoutDirection(direction);
        for (const auto& [key, value, value_from_right_to_left] : rows) {
            form->slider.Value = 0;
            EXPECT_EQ(bar.value(), 0);
            QTest::keyClick(&bar, key);
            EXPECT_EQ(
                form->slider.Value, direction == Qt::LeftToRight ? value : value_from_right_to_left)
                << key;
        }
        form->slider.Value = 0;
        QWheelEvent wheel({ 5, 5 }, bar.mapToGlobal(QPointF(5, 5)), {}, { 0, -120 }, {}, {},
            Qt::NoScrollPhase, false);
        QApplication::sendEvent(&bar, &wheel);
        EXPECT_EQ(form->slider.Value, QApplication::wheelScrollLines());
        bar.setValue(-2); // as assistive technologies do
        EXPECT_EQ(form->slider.Value, -2);
        EXPECT_EQ(handled, 0);
        bar.setSliderDown(true); // as a press on the thumb does
        bar.setSliderPosition(4);
        bar.setSliderDown(false);
        EXPECT_EQ(form->slider.Value, 4);
        EXPECT_EQ(std::exchange(handled, 0), 1);
    }
}

TEST_F(Views, TextAndTabsTellOfTheUserOnly)
{
    auto& line = desktop.find<QLineEdit>("line");
    form->line.Text = "code";
    EXPECT_EQ(line.text(), "code");
    QTest::keyClicks(&line, "+user");
    EXPECT_EQ(form->line.Text, std::string("code+user"));

    form->tabs.Click = count();
    auto& heads = desktop.find<QTabBar>("tabsHeads");
    form->tabs.SelectedItem = 1;
    EXPECT_EQ(heads.currentIndex(), 1);
    EXPECT_EQ(handled, 1);
    QTest::mouseClick(&heads, Qt::LeftButton, {}, heads.tabRect(0).center());
    EXPECT_EQ(form->tabs.SelectedItem, 0);
    EXPECT_EQ(handled, 2);
    QTest::mouseClick(&heads, Qt::LeftButton, {}, heads.tabRect(0).center()); // in front already
    QTest::mouseClick(&heads, Qt::RightButton, {}, heads.tabRect(0).center());
    EXPECT_EQ(handled, 3);
    QTest::keyClick(&heads, Qt::Key_Right);
    EXPECT_EQ(form->tabs.SelectedItem, 1);
    EXPECT_EQ(handled, 4);
    form->tabs.Tabs()[1].Caption = "Netz";
    form->tabs.Tabs()[1].ToolTipText = "View";
    EXPECT_EQ(heads.tabText(1), "Netz");
    EXPECT_EQ(heads.tabToolTip(1), "View");
}

TEST_F(Views, EveryControlHasANameForScreenReaders)
{
    form->combo.AddItem("Alice");
    form->combo.ListIndex = 0;
    form->slider.ToolTipText = "How fast";
    form->text.Caption = "Words";
    form->text.ToolTipText = "Leave me by F6";
    form->check.ToolTipText = "Ticked by you";
    const std::tuple<const char*, const char*, const char*> rows[] = { { "SpeakBtn", "Read", "" },
        { "check", "Read Clipboard Automatically", "Ticked by you" }, { "combo", "Alice", "Alice" },
        { "slider", "How fast", "How fast" }, { "tabsHeads", "Text", "" },
        { "text", "Words", "Leave me by F6" } };
    for (const auto& [widget, name, description] : rows) {
        const QAccessibleInterface* shown
            = QAccessible::queryAccessibleInterface(&desktop.find<QWidget>(widget));
        EXPECT_EQ(shown->text(QAccessible::Name), name);
        EXPECT_EQ(shown->text(QAccessible::Description), description) << widget;
    }
    EXPECT_EQ(desktop.find<QComboBox>("combo").accessibleName(), "Speaker");
    EXPECT_EQ(desktop.find<QLabel>("label").buddy(), &desktop.find<QComboBox>("combo"));
    form->button.Caption = "&Lies";
    EXPECT_EQ(desktop.find<QPushButton>("SpeakBtn").accessibleName(), "Lies");
}

TEST_F(Views, MenusShowOnlyWhatDoesSomething)
{
    desktop.main->mnuFileNew.Click = count();
    desktop.main->mnuFile.Caption = "&Document";
    desktop.settle();
    auto& menu = desktop.find<QMenu>("mnuFile");
    EXPECT_EQ(menu.title(), "&Document");
    const QList<QAction*> actions = menu.actions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[0]->text(), "New");
    EXPECT_EQ(actions[0]->shortcut(), QKeySequence("Ctrl+N"));
    EXPECT_TRUE(actions[0]->isVisible());
    EXPECT_FALSE(actions[1]->isVisible());
    EXPECT_FALSE(desktop.find<QMenu>("mnuEmpty").menuAction()->isVisible());
    actions[0]->trigger();
    EXPECT_EQ(handled, 1);
    desktop.main->mnuFileNew.Enabled = false;
    desktop.settle();
    EXPECT_FALSE(actions[0]->isEnabled());
}

TEST_F(Views, ToolButtonsAndPanelsFollowTheirControls)
{
    int pressed = 0;
    desktop.main->bar.ButtonClick = [&](int index) { pressed = index; };
    const QList<QAction*> actions = desktop.find<QToolBar>("bar").actions();
    ASSERT_EQ(actions.size(), 3);
    actions[2]->trigger();
    EXPECT_EQ(pressed, 3);
    desktop.main->bar.button(1).Enabled = false;
    EXPECT_FALSE(actions[0]->isEnabled());
    desktop.main->status.PanelText("Text") = "Line Number: 7";
    EXPECT_EQ(desktop.find<QLabel>("status.Text").text(), "Line Number: 7");
    EXPECT_FALSE(desktop.find<QLabel>("status.").text().isEmpty()); // the date shows by itself
}

} // namespace
} // namespace tessavox
