#include "platform/qt/message_boxes.h"

#include "platform/qt/text_conversion.h"

#include <QApplication>
#include <QMessageBox>

namespace tessavox {

MessageAnswer QtMessageBoxes::show(
    const std::string& text, const std::string& title, MessageButtons buttons, MessageIcon icon)
{
    QMessageBox box(QApplication::activeWindow());
    box.setObjectName("message");
    box.setTextFormat(Qt::PlainText);
    box.setText(to_qt(text));
    box.setWindowTitle(to_qt(title));
    box.setIcon(icon == MessageIcon::question ? QMessageBox::Question : QMessageBox::NoIcon);
    if (buttons == MessageButtons::yes_no_cancel) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::Cancel);
    } else {
        box.setStandardButtons(QMessageBox::Ok);
    }
    switch (box.exec()) {
    case QMessageBox::Yes:
        return MessageAnswer::yes;
    case QMessageBox::No:
        return MessageAnswer::no;
    default:
        return buttons == MessageButtons::ok ? MessageAnswer::ok : MessageAnswer::cancel;
    }
}

} // namespace tessavox
