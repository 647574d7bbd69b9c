#include "tests/contract/form_windows_contract.h"
#include "tests/platform/qt/demo_form.h"

#include "platform/document_arrangement.h"
#include "platform/failure.h"
#include "platform/qt/twips.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QScrollArea>
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

class Windows : public testing::Test {
protected:
    QMdiArea& area() { return desktop.find<QMdiArea>("documents"); }
    QMdiSubWindow& window(const std::string& name)
    {
        return desktop.find<QMdiSubWindow>(name.c_str());
    }

    DemoDesktop desktop;
};

TEST_F(Windows, AChildIsToldItsClientSizeWhenItIsShownAndWhenItChanges)
{
    auto child = std::make_shared<DemoChild>(desktop.forms);
    int resizes = 0;
    bool focus_worked = false;
    child->on_resize = [&] {
        ++resizes;
        focus_worked = attempt([&] { child->text.SetFocus(); });
    };
    EXPECT_THROW(child->window(), Failure);
    child->Load();
    desktop.settle();
    EXPECT_GE(resizes, 1);
    EXPECT_TRUE(focus_worked);
    EXPECT_TRUE(window("DemoChild").isMaximized());
    EXPECT_EQ(child->ScaleWidth(), to_twips(area().viewport()->width()));
    EXPECT_EQ(desktop.main->ScaleWidth(), child->ScaleWidth());
    EXPECT_EQ(window("DemoChild").windowTitle(), "/home/[*][*] a file.txt");

    const double before = child->ScaleWidth();
    QWidget& frame = desktop.find<QMainWindow>("DemoMain");
    frame.resize(frame.width() - 100, frame.height());
    desktop.settle();
    EXPECT_LT(child->ScaleWidth(), before);
    EXPECT_EQ(desktop.main->ScaleWidth(), to_twips(area().viewport()->width()));
}

TEST_F(Windows, TheMainWindowsTitleTellsTheMaximisedDocumentAlsoOneOpenedBeforeIt)
{
    const auto main = std::make_shared<DemoMain>(desktop.forms);
    desktop.main->Unload();
    desktop.settle();
    main->Load();
    const auto child = std::make_shared<DemoChild>(desktop.forms);
    child->Caption = "Document";
    child->Load();
    child->Caption = "later";
    main->Show();
    desktop.settle();
    EXPECT_EQ(desktop.find<QMainWindow>("DemoMain").windowTitle(), "Demo - [later]");
    child->Caption = "last";
    EXPECT_EQ(desktop.find<QMainWindow>("DemoMain").windowTitle(), "Demo - [last]");
    window("DemoChild").showNormal();
    EXPECT_EQ(desktop.find<QMainWindow>("DemoMain").windowTitle(), "Demo");
    main->Unload();
}

TEST_F(Windows, AWindowTooSmallForTheControlsScrolls)
{
    const auto child = desktop.open();
    window("DemoChild").showNormal();
    window("DemoChild").resize(150, 120);
    desktop.settle();
    const auto& scroll = dynamic_cast<QScrollArea&>(*window("DemoChild").widget());
    const QSize seen = scroll.viewport()->size();
    EXPECT_EQ(child->ScaleWidth(), to_twips(seen.width()));
    EXPECT_EQ(child->ScaleHeight(), to_twips(seen.height()));
    EXPECT_GE(to_twips(scroll.widget()->width()), child->button.Width());
    EXPECT_GE(to_twips(scroll.widget()->height()) + twips_per_pixel,
        child->stop.Top() + child->stop.Height());
}

TEST_F(Windows, AChildMayRefuseToCloseAndGoesWhenItAgrees)
{
    const auto child = desktop.open();
    child->on_unload = [](bool& Cancel) { Cancel = true; };
    window("DemoChild").close();
    desktop.settle();
    EXPECT_TRUE(child->is_loaded());
    EXPECT_TRUE(window("DemoChild").isVisible());
    EXPECT_FALSE(desktop.main->Unload());
    EXPECT_TRUE(desktop.main->is_loaded());

    child->on_unload = nullptr;
    window("DemoChild").close();
    desktop.settle();
    EXPECT_FALSE(child->is_loaded());
    EXPECT_TRUE(area().subWindowList().isEmpty());
}

TEST_F(Windows, AChildMayCloseItselfFromItsOwnHandlersAndAnotherBecomesActive)
{
    const auto first = desktop.open("first");
    auto second = desktop.open("second");
    EXPECT_EQ(desktop.forms.active_child(), second.get());
    std::weak_ptr<DemoChild> watched = second;
    second->button.Click = [&] {
        second->Unload();
        second.reset();
        QApplication::processEvents(); // as a message box in the same handler would
    };
    for (QWidget* widget : window("second").findChildren<QWidget*>("SpeakBtn"))
        QTest::mouseClick(widget, Qt::LeftButton);
    desktop.settle();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(desktop.forms.active_child(), first.get());
    EXPECT_EQ(area().activeSubWindow(), &window("first"));
    EXPECT_EQ(first->activations, 2);
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

TEST_F(Windows, ADocumentShowsForAssistanceWhileAnyOfItIsInSight)
{
    const auto first = desktop.open("first");
    const auto second = desktop.open("second");
    const auto& below = *window("first").findChild<QWidget*>("SpeakBtn");
    window("second").showNormal();
    for (const int shift : { 0, 100, 0 }) {
        window("first").setGeometry(shift, 0, 400, 300);
        window("second").setGeometry(0, 0, 450, 350);
        desktop.settle();
        EXPECT_EQ(below.isVisible(), shift > 0);
    }
}

TEST_F(Windows, DocumentsAreTiledWithinTheAreaAndMinimisedOnesLinedUpBelow)
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

    window("first").showMinimized();
    documents.Arrange(Arrangement::icons);
    EXPECT_EQ(window("first").geometry().bottomLeft(), room.bottomLeft());
    EXPECT_EQ(window("third").pos(), window("first").geometry().topRight() + QPoint(1, 0));
    EXPECT_EQ(area().viewport()->rect(), room);
}

TEST_F(Windows, ClosingTheMainWindowClosesTheDocumentsFirst)
{
    std::vector<std::string> gone;
    const auto first = desktop.open("first");
    const auto second = desktop.open("second");
    first->on_unload = [&](bool&) { gone.push_back("first"); };
    second->on_unload = [&](bool&) { gone.push_back("second"); };
    desktop.main->refuses_to_go = true;
    QWidget& frame = desktop.find<QMainWindow>("DemoMain");
    frame.close();
    desktop.settle();
    EXPECT_TRUE(frame.isVisible());
    EXPECT_EQ(gone, (std::vector<std::string>{ "first", "second" }));
    frame.close();
    desktop.settle();
    EXPECT_FALSE(desktop.main->is_loaded());
    EXPECT_EQ(desktop.ends, 1);
}

TEST_F(Windows, ADialogHasItsDesignSizeAndEscapeClosesIt)
{
    struct Dialog : Form {
        explicit Dialog(Forms& forms)
            : Form(forms, "Dialog", FormKind::dialog, 4500, 1500)
        {
        }
        CommandButton ok{ *this, "ok" };
    };
    const auto dialog = std::make_shared<Dialog>(desktop.forms);
    dialog->Show();
    desktop.settle();
    auto& widget = desktop.find<QWidget>("Dialog");
    EXPECT_EQ(widget.size(), QSize(300, 100));
    QTest::keyClick(&widget, Qt::Key_Escape);
    desktop.settle();
    EXPECT_FALSE(dialog->is_loaded());
}

} // namespace
} // namespace tessavox
