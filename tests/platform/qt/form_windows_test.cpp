#include "tests/contract/form_windows_contract.h"
#include "tests/platform/qt/demo_form.h"

#include "platform/document_arrangement.h"
#include "platform/failure.h"
#include "platform/qt/document_area.h"
#include "platform/qt/twips.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace tessavox {
namespace {

class QtWindowsBed {
public:
    FormWindows& windows() { return m_windows; }
    void post(std::function<void()> call) { m_gate.post(std::move(call)); }
    static void settle() { DemoDesktop::settle(); }

private:
    MessageGate m_gate;
    QtFormWindows m_windows{ m_gate };
};

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, FormWindowsContract, QtWindowsBed);

struct Windows : testing::Test {
    QMdiArea& area() { return desktop.find<QMdiArea>("documents"); }
    QMdiSubWindow& window(const std::string& name)
    {
        return desktop.find<QMdiSubWindow>(name.c_str());
    }

    DemoDesktop desktop;
};

TEST_F(Windows, AChildFillsTheAreaAndIsToldItsClientSize)
{
    auto child = std::make_shared<DemoChild>(desktop.forms);
    bool focus_worked = false;
    child->on_resize = [&] { focus_worked = attempt([&] { child->text.SetFocus(); }); };
    child->Load();
    desktop.settle();
    EXPECT_TRUE(focus_worked);
    EXPECT_TRUE(window("DemoChild").isMaximized());
    QWidget& frame = desktop.find<QMainWindow>("DemoMain");
    for (const int narrower : { 0, 100 }) {
        frame.resize(frame.width() - narrower, frame.height());
        desktop.settle();
        EXPECT_EQ(child->ScaleWidth(), to_twips(area().viewport()->width()));
        EXPECT_EQ(desktop.main->ScaleWidth(), child->ScaleWidth());
    }
}

TEST_F(Windows, ADocumentAndTheMainWindowMayRefuseToClose)
{
    const auto first = desktop.open("first");
    const auto second = desktop.open("second");
    bool refuses = true;
    second->on_unload = [&](bool& Cancel) { Cancel = refuses; };
    window("second").close();
    desktop.settle();
    EXPECT_TRUE(second->is_loaded() && window("second").isVisible());
    QWidget& frame = desktop.find<QMainWindow>("DemoMain");
    desktop.main->refuses_to_go = true;
    for (const bool second_stays : { true, false }) {
        refuses = second_stays;
        frame.close();
        desktop.settle();
        EXPECT_TRUE(frame.isVisible());
        EXPECT_EQ(second->is_loaded(), second_stays);
    }
    EXPECT_TRUE(area().subWindowList().isEmpty());
    frame.close();
    desktop.settle();
    EXPECT_FALSE(desktop.main->is_loaded());
    EXPECT_EQ(desktop.ends, 1);
}

TEST_F(Windows, AChildMayCloseItselfFromItsOwnHandlersAndAnotherBecomesActive)
{
    const auto first = desktop.open("first");
    auto second = desktop.open("second");
    std::weak_ptr<DemoChild> watched = second;
    second->button.Click = [&] {
        second->Unload();
        second.reset();
        QApplication::processEvents(); // as a message box in the same handler would
    };
    QTest::mouseClick(window("second").findChild<QWidget*>("SpeakBtn"), Qt::LeftButton);
    desktop.settle();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(area().activeSubWindow(), &window("first"));
    EXPECT_TRUE(window("first").isMaximized()); // as the one before it was
    window("first").showNormal();
    desktop.settle();
    EXPECT_EQ(first->ScaleWidth(), 9000); // and its own size is still the design's
}

TEST_F(Windows, TheUserActivatesAndMinimisesDocuments)
{
    const auto first = desktop.open("first");
    const auto second = desktop.open("second");
    desktop.settle();
    const auto& covered = *window("first").findChild<QWidget*>("SpeakBtn");
    const auto& in_front = *window("second").findChild<QWidget*>("SpeakBtn");
    EXPECT_FALSE(covered.isVisible()); // or a screen reader could press it
    EXPECT_TRUE(in_front.isVisible());
    area().setActiveSubWindow(&window("first"));
    desktop.settle();
    EXPECT_TRUE(covered.isVisible());
    EXPECT_FALSE(in_front.isVisible());
    second->on_resize = [&] { attempt([&] { second->text.SetFocus(); }); };
    window("first").showNormal(); // uncovers the second, and it is laid out
    desktop.settle();
    EXPECT_TRUE(in_front.isVisible());
    EXPECT_TRUE(area().viewport()->rect().contains(window("second").geometry()));
    EXPECT_EQ(desktop.forms.active_child(), first.get());
    EXPECT_EQ(first->activations, 2);
    window("first").showMinimized();
    desktop.settle();
    EXPECT_EQ(first->window_state.get(), WindowState::minimised);
    first->window_state = WindowState::normal;
    EXPECT_FALSE(window("first").isMinimized());
}

TEST_F(Windows, DocumentsAreListedAtTheEndOfAMenu)
{
    const auto first = desktop.open("first");
    const auto second = desktop.open("second");
    first->Caption = "a & [*]";
    second->Caption = std::string(1000, 'x');
    QMenu menu;
    menu.addAction("Cascade");
    auto& documents = dynamic_cast<DocumentArea&>(area());
    const auto entries = [&] {
        documents.list_in(menu);
        return menu.actions();
    };
    EXPECT_TRUE(entries().last()->isChecked());
    EXPECT_LT(menu.sizeHint().width(), area().width());
    EXPECT_EQ(entries()[2]->text(), "a && [*]");
    entries()[2]->trigger();
    EXPECT_EQ(area().activeSubWindow(), &window("first"));
    EXPECT_FALSE(entries().last()->isChecked());
}

TEST_F(Windows, DocumentsAreArrangedWithinTheAreaAndMinimisedOnesLinedUpBelow)
{
    const auto first = desktop.open("first");
    const auto second = desktop.open("second");
    const auto third = desktop.open("third");
    window("third").showMinimized();
    auto& documents = dynamic_cast<DocumentArrangement&>(area());
    const QRect room = area().viewport()->rect();
    const int half_width = room.width() / 2;
    const int half_height = room.height() / 2;

    documents.Arrange(Arrangement::tile_vertical);
    EXPECT_EQ(window("first").geometry(), QRect(0, 0, half_width, room.height()));
    EXPECT_EQ(window("second").geometry().topLeft(), QPoint(half_width, 0));
    documents.Arrange(Arrangement::tile_horizontal);
    EXPECT_EQ(window("first").geometry(), QRect(0, 0, room.width(), half_height));
    EXPECT_EQ(window("second").geometry().bottomRight(), room.bottomRight());
    EXPECT_TRUE(window("third").isMinimized());
    documents.Arrange(Arrangement::cascade);
    for (const char* name : { "first", "second" }) {
        EXPECT_TRUE(room.contains(window(name).geometry())) << name;
        EXPECT_GT(window(name).width(), half_width) << name;
        EXPECT_GT(window(name).height(), half_height) << name;
    }

    window("first").showMinimized();
    documents.Arrange(Arrangement::icons);
    EXPECT_EQ(window("first").geometry().bottomLeft(), room.bottomLeft());
    EXPECT_EQ(window("third").pos(), window("first").geometry().topRight() + QPoint(1, 0));
    EXPECT_EQ(area().viewport()->rect(), room);
}

} // namespace
} // namespace tessavox
