#include "platform/qt/web_pane.h"

#include "platform/failure.h"
#include "platform/qt/message_gate.h"
#include "tests/fakes/fake_platform.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

namespace tessavox {
namespace {

/// A page whose process answers, or hangs, as the test wants.
struct FakeView : PageView {
    FakeView(QWidget& parent, FakeClipboard& clipboard)
        : area(&parent)
        , clipboard(clipboard)
    {
    }
    QWidget& widget() override { return area; }
    void load(const QUrl& address) override { loaded = address.toString(QUrl::FullyEncoded); }
    bool go_back() override { return false; }
    bool go_forward() override { return false; }
    void stop() override { }
    void refresh() override { }
    QString location() const override { return loaded; }
    bool has_selection() const override { return !selection.empty(); }
    void copy() override
    {
        calls += "copy ";
        later([this] {
            clipboard.text = selection;
            calls += "copied ";
        });
    }
    void select_all() override
    {
        calls += "select ";
        later([this] {
            selection = text;
            if (selected)
                selected(!text.empty());
        });
    }
    void save(const QString&) override { }
    void print() override { }
    void later(std::function<void()> answer)
    {
        if (!hangs)
            QTimer::singleShot(20, &area, std::move(answer));
    }

    QWidget area;
    FakeClipboard& clipboard;
    QString loaded;
    std::u16string text = u"all of it", selection;
    std::string calls;
    bool hangs = false;
};

struct QtWebPaneTest : testing::Test {
    MessageGate gate;
    FakePlatform outside;
    FakeView* view = nullptr;
    bool is_installed = true;
    WebPaneParts parts{ outside.clipboard, outside.dialogs, outside.shell, outside.texts, gate,
        "helper", [this](QWidget& parent, const PageHost&) -> std::unique_ptr<PageView> {
            if (!is_installed)
                throw Failure("pages can't be shown");
            auto made = std::make_unique<FakeView>(parent, outside.clipboard);
            view = made.get();
            return made;
        } };
    QtWebPane pane{ parts };
};

TEST_F(QtWebPaneTest, WhatAUserTypesIsAnAddressAPathOrASearch)
{
    const std::pair<const char*, const char*> rows[] = {
        { "Http://a.example", "http://a.example" },
        { "a.example/b?c", "http://a.example/b?c" },
        { " /d/a b.pdf", "file:///d/a%20b.pdf" },
        { "127.0.0.1:80", "http://127.0.0.1:80" },
        { "two words", "https://duckduckgo.com/?q=two%20words" },
    };
    for (const auto& [typed, address] : rows) {
        pane.Navigate(typed);
        EXPECT_EQ(view->loaded, address);
    }
    EXPECT_EQ(pane.LocationURL(), rows[4].second);
    EXPECT_THROW(pane.GoBack(), Failure);
}

TEST_F(QtWebPaneTest, CostsNoPageBeforeTheFirstOneAndSaysWhereThereIsNone)
{
    is_installed = false;
    pane.Stop();
    pane.ExecWB(WebCommand::copy);
    EXPECT_EQ(pane.LocationURL(), "");
    EXPECT_THROW(pane.Navigate("a.example"), Failure);
    const auto* const message = pane.widget().findChild<QLabel*>();
    EXPECT_EQ(message->text(), "pages can't be shown");
    EXPECT_FALSE(message->isHidden());
    is_installed = true;
    pane.Navigate("a.example");
    EXPECT_TRUE(message->isHidden());
}

TEST_F(QtWebPaneTest, ACopyIsThereWhenTheCommandReturnsAndNothingElseRunsMeanwhile)
{
    pane.Navigate("a.example");
    bool ran = false;
    gate.post([&] { ran = true; });
    pane.ExecWB(WebCommand::copy); // nothing is selected
    EXPECT_EQ(view->calls, "");
    pane.ExecWB(WebCommand::select_all);
    pane.ExecWB(WebCommand::copy);
    EXPECT_EQ(outside.clipboard.text, u"all of it");
    EXPECT_EQ(view->calls, "select copy copied ");
    EXPECT_FALSE(ran);
    QApplication::processEvents();
    EXPECT_TRUE(ran);
    view->calls.clear();
    view->text = view->selection = u"";
    pane.ExecWB(WebCommand::select_all);
    pane.ExecWB(WebCommand::copy);
    EXPECT_EQ(view->calls, "select copy "); // of no text, which isn't waited for
}

TEST_F(QtWebPaneTest, APageThatHangsIsGivenUp)
{
    pane.Navigate("a.example");
    view->hangs = true;
    view->selection = u"never copied";
    pane.ExecWB(WebCommand::copy);
    pane.ExecWB(WebCommand::select_all);
    EXPECT_EQ(outside.clipboard.text, u"");
    view->hangs = false;
    QApplication::processEvents(); // the handler is over
    pane.ExecWB(WebCommand::copy);
    EXPECT_EQ(outside.clipboard.text, u"never copied");
}

} // namespace
} // namespace tessavox
