#include "platform/qt/clipboard.h"

#include "platform/qt/rich_text_pane.h"
#include "platform/qt/text_conversion.h"
#include "tests/contract/clipboard_contract.h"
#include "tests/platform/qt/desktop/other_program.h"

#include <QApplication>
#include <QTest>

#include <memory>

namespace tessavox {
namespace {

class DesktopBed {
public:
    DesktopBed()
    {
        m_clipboard.when_changed([this] { ++m_changes; });
    }
    Clipboard& clipboard() { return m_clipboard; }
    void other_offers(const OtherProgram::Offer& offer)
    {
        const auto before = std::move(m_other); // its going must not count as a change
        const int changes = m_changes;
        m_other = std::make_unique<OtherProgram>(offer);
        ASSERT_TRUE(QTest::qWaitFor([&] { return m_changes > changes; }, 20'000));
    }
    void other_copies(const std::u16string& text)
    {
        other_offers({ { "text/plain", as_qstring(text).toUtf8() } });
    }
    void other_copies_a_picture() { other_offers({ { "image/png", "\x89PNG" } }); }
    void other_holds_back(const std::u16string& text)
    {
        other_copies(text);
        m_other->stop();
    }
    void other_gives() { m_other->go_on(); }
    void settle() { QApplication::processEvents(QEventLoop::AllEvents, 10); }

private:
    QtClipboard m_clipboard;
    std::unique_ptr<OtherProgram> m_other;
    int m_changes = 0;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, ClipboardContract, DesktopBed);

TEST(Clipboard, PastingByKeyDoesNotWaitForAnOwnerThatHoldsBack)
{
    DesktopBed bed;
    QtRichTextPane pane(&bed.clipboard());
    pane.widget().show();
    bed.other_holds_back(u"late");
    QTest::keyClick(&pane.widget(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(pane.Text().empty());
    bed.other_gives();
    ASSERT_TRUE(QTest::qWaitFor([&] { return bed.clipboard().has_text(); }, 20'000));
    QTest::keyClick(&pane.widget(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(pane.Text().view(), u"late");
}

TEST(Clipboard, OtherProgramsGetWhatIsPutThere)
{
    QtClipboard clipboard;
    const std::u16string text(300'000, u'\u4e16'); // more than goes at once
    clipboard.SetText(text);
    EXPECT_EQ(as_utf16(OtherProgram::pasted()), text);
    clipboard.Clear();
    EXPECT_EQ(OtherProgram::pasted(), "");
}

TEST(Clipboard, TakesATextAlsoWhereAnotherHasJustBeenCopied)
{
    QtClipboard clipboard;
    const OtherProgram first({ { "text/plain", "theirs" } }); // of which no word has come yet
    clipboard.SetText(u"ours");
    EXPECT_EQ(OtherProgram::pasted(), "ours");
    const OtherProgram second({ { "text/plain", "theirs" } });
    clipboard.Clear();
    EXPECT_EQ(OtherProgram::pasted(), "");
}

} // namespace
} // namespace tessavox
