#include "platform/qt/fitted_text.h"

#include <QFontMetrics>
#include <QWidget>

#include <algorithm>

namespace tessavox {

// Letters stand closer first, and are narrower then if that lets all be seen; never lower than
// their neighbours'.
QFont fitted_font(QFont font, const QString& text, int width)
{
    constexpr double tightest = -0.5; // pixels a letter: some 4 % of a common font's
    constexpr int narrowest = 85; // percent
    const auto width_in = [&](const QFont& tried) {
        return QFontMetrics(tried).size(Qt::TextShowMnemonic, text).width();
    };
    const int spare = width - width_in(font);
    if (spare < 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing,
            std::max(tightest, (spare - 1) / static_cast<double>(text.size())));
    // What letters need at whole pixels doesn't shrink quite as they do.
    const QFont closer = font;
    for (int share = 100 * width / std::max(1, width_in(font)); width_in(font) > width; --share) {
        if (share < narrowest)
            return closer;
        font.setStretch(share);
    }
    return font;
}

QString fitted_text(const QFont& font, const QString& text, int width)
{
    return QFontMetrics(font).elidedText(
        text, Qt::ElideRight, std::max(width, 0), Qt::TextShowMnemonic);
}

QString fit_text(QWidget& widget, const QFont& font, const QString& text, int width)
{
    const QFont fitted = fitted_font(font, text, width);
    if (widget.font() != fitted)
        widget.setFont(fitted);
    return fitted_text(fitted, text, width);
}

QString tip_for(const QString& text, const QString& shown, const QString& tip)
{
    if (shown == text)
        return tip;
    const QString whole = QString(text).remove('&');
    return tip.isEmpty() ? whole : whole + "\n" + tip;
}

} // namespace tessavox
