#include "platform/qt/caret_menu.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QTextEdit>

#include <algorithm>

namespace tessavox {

bool opens_menu(const QKeyEvent& key)
{
    return key.key() == Qt::Key_Menu
        || (key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier);
}

void bring_menu_to_caret(const QTextEdit& text)
{
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu)
        return;
    const QPoint caret = text.cursorRect().bottomLeft();
    const QWidget& seen = *text.viewport();
    menu->popup(seen.mapToGlobal(
        QPoint(std::clamp(caret.x(), 0, seen.width()), std::clamp(caret.y(), 0, seen.height()))));
}

} // namespace tessavox
