#include "platform/qt/legible_text.h"

#include "platform/qt/colours.h"

#include <QPalette>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>

namespace tessavox {
namespace {

bool has(const QTextFormat& format, QTextFormat::Property brush)
{
    return format.brushProperty(brush).style() != Qt::NoBrush;
}

bool has_colours(const QTextFormat& format)
{
    return has(format, QTextFormat::ForegroundBrush) || has(format, QTextFormat::BackgroundBrush);
}

QList<QTextLayout::FormatRange> shades(const QTextBlock& block, const QPalette& palette)
{
    QList<QTextLayout::FormatRange> ranges;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QTextCharFormat format = fragment.charFormat();
        if (!has_colours(format))
            continue;
        const auto colour = [&](QTextFormat::Property property, QPalette::ColorRole usual) {
            return has(format, property) ? format.brushProperty(property).color()
                                         : palette.color(QPalette::Active, usual);
        };
        const QColor ink = colour(QTextFormat::ForegroundBrush, QPalette::Text);
        const QColor shade = legible(ink, colour(QTextFormat::BackgroundBrush, QPalette::Base));
        if (shade == ink)
            continue;
        ranges.append({ fragment.position() - block.position(), fragment.length(), {} });
        ranges.back().format.setForeground(shade);
    }
    return ranges;
}

} // namespace

void show_legibly(QTextDocument& document, int from, int to, const QPalette& palette)
{
    const QList<QTextFormat> formats = document.allFormats();
    if (std::none_of(formats.begin(), formats.end(), has_colours))
        return;
    const bool dark = is_dark(palette.color(QPalette::Active, QPalette::Base));
    QTextBlock block = document.findBlock(from);
    for (; block.isValid() && block.position() <= to; block = block.next()) {
        const auto ranges = dark ? shades(block, palette) : QList<QTextLayout::FormatRange>();
        if (block.layout()->formats() == ranges)
            continue;
        block.layout()->setFormats(ranges);
        document.markContentsDirty(block.position(), block.length());
    }
}

} // namespace tessavox
