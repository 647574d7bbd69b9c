#include "tests/platform/qt/demo_form.h"

#include "platform/failure.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QToolBar>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace tessavox {
namespace {

class Views : public testing::Test {
protected:
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

TEST_F(Views, WhoPressesAButtonThatDisablesItselfLandsOnTheOneInItsPlace)
{
    form->button.Click = [this] {
        form->button.Enabled = false;
        form->stop.Enabled = true;
    };
    form->stop.Click = [this] {
        form->stop.Visible = false;
        form->go_on.Visible = true;
        form->button.Enabled = true;
    };
    form->stop.Enabled = false;
    form->go_on.Visible = false;
    auto& read = desktop.find<QPushButton>("SpeakBtn");
    auto& stop = desktop.find<QPushButton>("StopBtn");
    read.window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(read.window()));
    read.setFocus();
    const QSignalSpy focus(qApp, &QApplication::focusChanged);
    QTest::keyClick(&read, Qt::Key_Space);
    desktop.settle();
    ASSERT_EQ(focus.count(), 2); // no hopping over what is about to be disabled too
    EXPECT_EQ(focus.at(0).at(1).value<QWidget*>(), nullptr);
    EXPECT_EQ(read.window()->focusWidget(), &stop);
    QTest::keyClick(&stop, Qt::Key_Space);
    desktop.settle();
    EXPECT_EQ(read.window()->focusWidget(), &desktop.find<QPushButton>("ResumeBtn"));
}

TEST_F(Views, SignAndCaptionStandInTheMiddleInBothDirections)
{
    auto& button = desktop.find<QPushButton>("SpeakBtn");
    std::vector<int> widths;
    for (const auto direction : { Qt::LeftToRight, Qt::RightToLeft }) {
        button.setLayoutDirection(direction);
        const QImage image = button.grab().toImage();
        const int middle = image.height() / 2;
        std::vector<int> inked;
        for (int x = 4; x < image.width() - 4; ++x) {
            for (int y = middle - 8; y < middle + 8; ++y) {
                if (qGray(image.pixel(x, y)) < 100 && (inked.empty() || inked.back() != x))
                    inked.push_back(x);
            }
        }
        ASSERT_GT(inked.size(), 20u);
        EXPECT_NEAR(inked.front(), image.width() - inked.back(), 12) << direction;
        widths.push_back(inked.back() - inked.front());
    }
    EXPECT_NEAR(widths[0], widths[1], 8); // neither apart nor on each other
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

TEST_F(Views, AWordTypedIntoAListChoosesOnceItIsComplete)
{
    QApplication::setKeyboardInputInterval(60'000);
    auto& box = desktop.find<QComboBox>("combo");
    for (const char* text : { "Irish", "Georgian", "Old German", "German two" })
        form->combo.AddItem(text);
    form->combo.ListIndex = 0;
    form->combo.Click = count();
    const struct {
        const char* typed;
        Qt::Key end;
        int index;
        int choices;
    } rows[] = { { "ge", Qt::Key_Escape, 0, 0 }, { "ge", Qt::Key_Return, 1, 1 },
        { "german t", Qt::Key_Return, 3, 1 }, { "d german", Qt::Key_Tab, 2, 1 },
        { "old", Qt::Key_Return, 2, 0 }, { "irish", Qt::Key_Down, 1, 2 } };
    for (const auto& row : rows) {
        handled = 0;
        box.setFocus();
        QTest::keyClicks(&box, row.typed);
        QTest::keyClick(&box, Qt::Key_Shift);
        EXPECT_EQ(handled, 0) << row.typed;
        QTest::keyClick(&box, row.end);
        EXPECT_EQ(form->combo.ListIndex, row.index) << row.typed;
        EXPECT_EQ(handled, row.choices) << row.typed;
        EXPECT_EQ(box.currentIndex(), row.index) << row.typed;
    }
    QTest::keyClicks(&box, "ger");
    form->combo.ListIndex = 0; // code has the last word
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(form->combo.ListIndex, 0);
    QApplication::setKeyboardInputInterval(20);
    QTest::keyClicks(&box, "german");
    EXPECT_TRUE(QTest::qWaitFor([&] { return form->combo.ListIndex == 3; }));
}

TEST_F(Views, OnlyDraggingTheThumbScrolls)
{
    form->slider.Scroll = count();
    auto& bar = desktop.find<QScrollBar>("slider");
    EXPECT_EQ(bar.minimum(), -10);
    const struct {
        Qt::Key key;
        int value;
        int value_from_right_to_left;
    } rows[] = { { Qt::Key_Right, 1, -1 }, { Qt::Key_Left, -1, 1 }, { Qt::Key_Down, 1, 1 },
        { Qt::Key_Up, -1, -1 }, { Qt::Key_PageDown, 6, 6 }, { Qt::Key_PageUp, -6, -6 },
        { Qt::Key_Home, -10, -10 }, { Qt::Key_End, 10, 10 } };
    for (const auto direction : { Qt::LeftToRight, Qt::RightToLeft }) {
        bar.setLayoutDirection(direction);
        for (const auto& row : rows) {
            form->slider.Value = 0;
            EXPECT_EQ(bar.value(), 0);
            QTest::keyClick(&bar, row.key);
            EXPECT_EQ(form->slider.Value,
                direction == Qt::LeftToRight ? row.value : row.value_from_right_to_left)
                << row.key;
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
    const struct {
        const char* widget;
        const char* name;
        const char* description;
    } rows[] = { { "SpeakBtn", "Read", "" },
        { "check", "Read Clipboard Automatically", "Ticked by you" }, { "combo", "Alice", "Alice" },
        { "slider", "How fast", "How fast" }, { "tabsHeads", "Text", "" },
        { "text", "Words", "Leave me by F6" } };
    for (const auto& row : rows) {
        const QAccessibleInterface* shown
            = QAccessible::queryAccessibleInterface(&desktop.find<QWidget>(row.widget));
        EXPECT_EQ(shown->text(QAccessible::Name), row.name);
        EXPECT_EQ(shown->text(QAccessible::Description), row.description) << row.widget;
    }
    EXPECT_EQ(desktop.find<QComboBox>("combo").accessibleName(), "Speaker");
    EXPECT_EQ(desktop.find<QLabel>("label").buddy(), &desktop.find<QComboBox>("combo"));
    form->button.Caption = "&Lies";
    EXPECT_EQ(desktop.find<QPushButton>("SpeakBtn").accessibleName(), "Lies");
}

TEST_F(Views, TheTabKeyGoesThroughTheControlsInTheirOrder)
{
    auto& button = desktop.find<QPushButton>("SpeakBtn");
    button.setFocus();
    const char* names[]
        = { "StopBtn", "ResumeBtn", "check", "combo", "slider", "line", "tabsHeads", "text" };
    for (const char* name : names) {
        QTest::keyClick(button.window()->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(button.window()->focusWidget()->objectName(), name);
    }
}

TEST_F(Views, TwipsAreFifteenToThePixelAndWhatSticksOutIsCut)
{
    EXPECT_EQ(desktop.find<QPushButton>("SpeakBtn").geometry(), QRect(0, 0, 185, 52));
    EXPECT_EQ(desktop.find<QCheckBox>("check").geometry(), QRect(8, 60, 177, 17));
    EXPECT_GE(desktop.find<QComboBox>("combo").height(), 21);
}

TEST_F(Views, FromRightToLeftPlacesCountFromTheRightEdge)
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    desktop.settle();
    const auto& read = desktop.find<QPushButton>("SpeakBtn");
    const auto& column = *read.parentWidget();
    for (const int wider : { 60, 0 }) {
        QWidget& frame = desktop.find<QMainWindow>("DemoMain");
        frame.resize(frame.width() + wider, frame.height());
        desktop.settle();
        EXPECT_EQ(column.geometry().right(), column.parentWidget()->rect().right());
    }
    EXPECT_EQ(desktop.find<QLabel>("label").geometry().right(), column.rect().right());
    EXPECT_EQ(desktop.find<QComboBox>("combo").geometry().left(), 0);
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(Views, WhatIsCutIsWholeInTheToolTipAndNoTextIsSmallerThanItsNeighbours)
{
    const auto& label = desktop.find<QLabel>("label");
    const auto& combo = desktop.find<QComboBox>("combo");
    auto& check = desktop.find<QCheckBox>("check");
    form->check.ToolTipText = "Ticked by you";
    form->check.Caption = std::string(60, 'm');
    EXPECT_EQ(check.text().back(), QChar(u'…'));
    EXPECT_EQ(check.toolTip().toStdString(), std::string(60, 'm') + "\nTicked by you");
    EXPECT_EQ(check.font().pointSizeF(), label.font().pointSizeF());
    EXPECT_NEAR(label.geometry().center().y(), combo.geometry().center().y(), 1);
    form->check.Caption = "Short";
    EXPECT_EQ(check.toolTip(), "Ticked by you");
    EXPECT_EQ(check.font().letterSpacing(), 0);
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
