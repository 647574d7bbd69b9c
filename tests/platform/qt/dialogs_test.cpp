#include "platform/files/disk_file_store.h"
#include "platform/qt/document_check.h"
#include "platform/qt/file_dialogs.h"
#include "platform/qt/font_dialogs.h"
#include "platform/qt/message_boxes.h"
#include "platform/qt/text_conversion.h"
#include "platform/text_limits.h"

#include "tests/contract/dialogs_contract.h"
#include "tests/platform/files/test_folder.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QFontInfo>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <deque>
#include <fstream>
#include <functional>
#include <vector>

namespace tessavox {
namespace {

struct NumberedTexts : Texts {
    std::string LoadResString(int id) const override { return std::to_string(id) + " %1"; }
};

/// Knows by the name what can't be written.
struct FixedFiles : FileStore {
    std::string read(const std::string&, std::size_t) override { return {}; }
    void write(const std::string&, const std::string&, Durability) override { }
    WriteObstacle obstacle_to_writing(const std::string& path) override
    {
        return path.ends_with("fixed")    ? WriteObstacle::not_writable
            : path.ends_with("gone/file") ? WriteObstacle::no_folder
                                          : WriteObstacle::none;
    }
    ReadObstacle obstacle_to_opening(const std::string& path) override
    {
        return path.ends_with("fixed") ? ReadObstacle::too_long : ReadObstacle::none;
    }
};

/// Does one thing after the other, each to a dialog of its kind as soon as one is in front.
class User {
public:
    ~User() { EXPECT_TRUE(m_acts.empty()) << "a dialog didn't appear"; }

    template <class Kind, class Act> void will(Act act)
    {
        m_acts.push_back([act](QWidget& front) {
            auto* dialog = qobject_cast<Kind*>(&front);
            // A dialog is free again once the loop of the message over it has ended.
            const int level = QThread::currentThread()->loopLevel();
            if (!dialog || (level > 1 && qobject_cast<QFileDialog*>(dialog)))
                return false;
            QTimer::singleShot(0, dialog, [act, dialog] { act(*dialog); });
            return true;
        });
        if (m_acts.size() == 1)
            look();
    }

private:
    void look()
    {
        QTimer::singleShot(1, &m_timer_owner, [this] {
            QWidget* const front = QApplication::activeModalWidget();
            if (front && front->isVisible() && m_acts.front()(*front))
                m_acts.pop_front();
            if (!m_acts.empty())
                look();
        });
    }

    QObject m_timer_owner;
    std::deque<std::function<bool(QWidget&)>> m_acts;
};

class QtDialogsBed {
public:
    QtDialogsBed() { std::ofstream(m_folder / "old.wav") << "sound"; }

    MessageBoxes& boxes() { return m_boxes; }
    FileDialogs& dialogs() { return m_dialogs; }
    std::string path(const std::string& name) { return m_folder / name; }
    void user_presses(MessageAnswer answer)
    {
        const auto button = answer == MessageAnswer::yes ? QMessageBox::Yes
            : answer == MessageAnswer::no                ? QMessageBox::No
                                                         : QMessageBox::Cancel;
        m_user.will<QMessageBox>([button](QMessageBox& box) { box.button(button)->click(); });
    }
    void user_closes()
    {
        m_user.will<QMessageBox>([](QMessageBox& box) { box.close(); });
    }
    void user_chooses(const std::string& name)
    {
        m_user.will<QFileDialog>([name](QFileDialog& dialog) {
            auto& line = *dialog.findChild<QLineEdit*>("fileNameEdit");
            dialog.activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
            line.setFocus();
            line.setText(to_qt(name));
            QTest::keyClick(&line, Qt::Key_Return);
        });
    }
    void user_cancels()
    {
        m_user.will<QFileDialog>([](QFileDialog& dialog) { dialog.close(); });
    }
    /// Reads and closes the message in front.
    void user_reads(std::vector<std::string>& texts)
    {
        m_user.will<QMessageBox>([&texts](QMessageBox& box) {
            texts.push_back(from_qt(box.text()));
            box.close();
        });
    }

private:
    TestFolder m_folder;
    NumberedTexts m_texts;
    QtMessageBoxes m_boxes;
    FixedFiles m_files;
    QtFileDialogs m_dialogs{ m_files, m_texts };
    User m_user;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, DialogsContract, QtDialogsBed);

TEST(SaveDialog, WhatCannotBeWrittenIsRefusedWithAMessageAndTheDialogStays)
{
    QtDialogsBed bed;
    std::vector<std::string> messages;
    bed.user_chooses("fixed");
    bed.user_reads(messages);
    bed.user_chooses("gone/file");
    bed.user_reads(messages);
    bed.user_chooses("new.wav");
    FileDialogRequest request;
    request.FileName = bed.path("old.wav");
    EXPECT_EQ(bed.dialogs().ShowSave(request), bed.path("new.wav"));
    EXPECT_EQ(messages, (std::vector<std::string>{ "2301 fixed", "2302 file" }));
}

TEST(OpenDialog, WhatIsNoDocumentIsRefusedWhereOneIsWantedAndTheDialogStays)
{
    QtDialogsBed bed;
    std::vector<std::string> messages;
    std::ofstream(bed.path("fixed")) << "text"; // nothing that isn't there can be chosen
    FileDialogRequest request;
    request.FileName = bed.path("old.wav");
    bed.user_chooses("fixed");
    EXPECT_EQ(bed.dialogs().ShowOpen(request), bed.path("fixed"));
    request.must_be_text = true;
    bed.user_chooses("fixed");
    bed.user_reads(messages);
    bed.user_chooses("old.wav");
    EXPECT_EQ(bed.dialogs().ShowOpen(request), bed.path("old.wav"));
    EXPECT_EQ(messages, std::vector<std::string>{ "2356 fixed" });
}

TEST(OpenDialog, WhatAFileHoldsSaysWhetherItIsADocument)
{
    const std::string lines(most_text_paragraphs, '\n');
    std::string paragraphs = "{\\rtf1 ";
    for (std::size_t i = 0; i <= most_text_paragraphs; ++i)
        paragraphs += "\\par ";
    const std::string utf16 = "\xFF\xFE" + std::string(most_text_paragraphs, '\n'); // U+0A0A
    const std::tuple<const char*, std::string, ReadObstacle> rows[] = {
        { "a.txt", "a", ReadObstacle::none },
        { "lines", lines, ReadObstacle::too_long },
        { "lines.doc", lines, ReadObstacle::none },
        { "utf16", utf16, ReadObstacle::none },
        { "line", std::string(most_paragraph_units + 1, ' '), ReadObstacle::too_long },
        { "a.RTF", "{\\rtf1 a}", ReadObstacle::none },
        { "b.rtf", "a", ReadObstacle::no_rich_text },
        { "c.rtf", paragraphs, ReadObstacle::too_long },
        { "d.rtf", "{\\rtf1 " + std::string(most_paragraph_units + 1, 'x'),
            ReadObstacle::too_long },
    };
    TestFolder folder;
    DiskFileStore files;
    for (const auto& [name, content, obstacle] : rows) {
        folder.write(name, content);
        EXPECT_EQ(obstacle_to_document(files, folder / name), obstacle) << name;
    }
    EXPECT_EQ(obstacle_to_document(files, folder / "none"), ReadObstacle::not_readable);
}

TEST(FontDialog, EndsByTheKeysAlsoInItsListsAndChangesOnlyWhatIsAltered)
{
    const NumberedTexts texts;
    for (const auto key : { Qt::Key_Escape, Qt::Key_Return }) {
        User user;
        user.will<QDialog>([key](QDialog& dialog) {
            auto& list = *dialog.findChild<QListView*>();
            EXPECT_EQ(
                list.currentIndex().data().toString(), QFontInfo(QFont("No such font")).family());
            for (const char* name : { "Font", "Font style", "Size" }) {
                const auto named
                    = [name](const QWidget* one) { return one->accessibleName() == name; };
                const auto lists = dialog.findChildren<QListView*>();
                const auto lines = dialog.findChildren<QLineEdit*>();
                EXPECT_EQ(std::count_if(lists.begin(), lists.end(), named), 1) << name;
                EXPECT_EQ(std::count_if(lines.begin(), lines.end(), named), 1) << name;
            }
            dialog.findChildren<QCheckBox*>().last()->click(); // underlines
            QTest::keyClick(&list, key);
            EXPECT_FALSE(dialog.isVisible());
            dialog.close();
        });
        FontChoice choice;
        choice.FontName = "No such font";
        QtFontDialogs(texts).ShowFont(choice);
        EXPECT_EQ(choice.FontName, "No such font");
        EXPECT_EQ(choice.FontUnderline, key == Qt::Key_Return);
    }
}

} // namespace
} // namespace tessavox
