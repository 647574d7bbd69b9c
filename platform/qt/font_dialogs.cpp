#include "platform/qt/font_dialogs.h"

#include "platform/qt/child_widget.h"
#include "platform/qt/text_conversion.h"
#include "platform/rich_text_pane.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFontDialog>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tessavox {
namespace {

QColor color_of(std::int32_t color)
{
    constexpr int byte = 0xff;
    return color == automatic_color ? QApplication::palette().color(QPalette::Text)
                                    : QColor(color & byte, color >> 8 & byte, color >> 16 & byte);
}

QFont font_of(const FontChoice& choice)
{
    QFont font(to_qt(choice.FontName));
    if (choice.FontSize > 0)
        font.setPointSizeF(choice.FontSize);
    font.setBold(choice.FontBold);
    font.setItalic(choice.FontItalic);
    font.setUnderline(choice.FontUnderline);
    font.setStrikeOut(choice.FontStrikethru);
    // The dialog would show any other font for one that isn't there.
    if (!QFontDatabase::hasFamily(font.family()))
        font.setFamily(QFontInfo(font).family());
    // It doesn't find a style by the names that it gives them in other languages.
    for (const QString& style : QFontDatabase::styles(font.family())) {
        if (QFontDatabase::weight(font.family(), style) == font.weight()
            && QFontDatabase::italic(font.family(), style) == font.italic())
            font.setStyleName(style);
    }
    return font;
}

/// The toolkit's own choice of a font has no colour, so that it lies in a dialog of ours. It shows
/// another font for one that isn't there and sizes without a fraction, so that only what the user
/// alters is taken from it.
class FontDialog : public QDialog {
public:
    FontDialog(const FontChoice& choice, const QString& title, const QString& color_text)
        : QDialog(QApplication::activeWindow())
        , m_fonts(make_child<QFontDialog>(font_of(choice), this))
        , m_shown_font(m_fonts.currentFont())
        , m_color_button(make_child<QPushButton>(color_text, this))
        , m_color(choice.Color)
    {
        setWindowTitle(title);
        m_fonts.setWindowFlags(Qt::Widget);
        m_fonts.setOptions(QFontDialog::NoButtons | QFontDialog::DontUseNativeDialog);
        m_fonts.setSizeGripEnabled(false);
        auto& buttons = make_child<QDialogButtonBox>(
            QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, this);
        buttons.addButton(&m_color_button, QDialogButtonBox::ActionRole);
        name_fields();
        connect(&buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(&buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(&m_fonts, &QDialog::finished, this, &QDialog::done); // by a key in one of its lists
        connect(&m_color_button, &QPushButton::clicked, this, [this] { choose_color(); });
        auto& rows = make_child<QVBoxLayout>(this);
        rows.addWidget(&m_fonts);
        rows.addWidget(&buttons);
        show_color();
    }

    void take_over(FontChoice& choice) const
    {
        const QFont font = m_fonts.currentFont();
        if (font.family() != m_shown_font.family())
            choice.FontName = from_qt(font.family());
        if (font.pointSize() != m_shown_font.pointSize())
            choice.FontSize = font.pointSize();
        if (font.bold() != m_shown_font.bold())
            choice.FontBold = font.bold();
        if (font.italic() != m_shown_font.italic())
            choice.FontItalic = font.italic();
        choice.FontUnderline = font.underline();
        choice.FontStrikethru = font.strikeOut();
        choice.Color = m_color;
    }

private:
    /// The toolkit leaves lists and the lines above them without a name for screen readers. Each
    /// label belongs to one of the two.
    void name_fields()
    {
        m_fonts.setAccessibleName(windowTitle());
        const auto lines = m_fonts.findChildren<QLineEdit*>();
        const auto lists = m_fonts.findChildren<QListView*>();
        qsizetype next = 0;
        for (const QLabel* label : m_fonts.findChildren<QLabel*>()) {
            if (!label->buddy() || next >= std::min(lines.size(), lists.size()))
                continue;
            for (QWidget* field :
                { static_cast<QWidget*>(lines[next]), static_cast<QWidget*>(lists[next]) })
                field->setAccessibleName(QString(label->text()).remove('&'));
            ++next;
        }
    }

    void choose_color()
    {
        const QColor chosen = QColorDialog::getColor(
            color_of(m_color), this, {}, QColorDialog::DontUseNativeDialog);
        if (chosen.isValid())
            m_color = RGB(chosen.red(), chosen.green(), chosen.blue());
        show_color();
    }

    void show_color()
    {
        QPixmap sample(m_color_button.iconSize());
        sample.fill(color_of(m_color));
        m_color_button.setIcon(sample);
    }

    QFontDialog& m_fonts;
    const QFont m_shown_font;
    QPushButton& m_color_button;
    std::int32_t m_color;
};

} // namespace

void QtFontDialogs::ShowFont(FontChoice& choice)
{
    FontDialog dialog(
        choice, to_qt(m_texts.LoadResString(1421)), to_qt(m_texts.LoadResString(2341)));
    if (dialog.exec() == QDialog::Accepted)
        dialog.take_over(choice);
}

} // namespace tessavox
