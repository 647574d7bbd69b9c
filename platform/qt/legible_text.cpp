#include "platform/qt/legible_text.h"

#include "platform/qt/colours.h"

#include <QPalette>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <optional>
#include <vector>

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

/// The shades of a document's formats, each found when it is first met.
class Shades {
public:
    Shades(const QList<QTextFormat>& formats, const QPalette& palette)
        : m_formats(formats)
        , m_text(palette.color(QPalette::Active, QPalette::Text))
        , m_base(palette.color(QPalette::Active, QPalette::Base))
        , m_shades(static_cast<std::size_t>(formats.size()))
    {
    }

    QList<QTextLayout::FormatRange> of(const QTextBlock& block)
    {
        QList<QTextLayout::FormatRange> ranges;
        int start = 0; // a fragment's own place would be looked up in a tree
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int length = fragment.length();
            auto& shade = m_shades[static_cast<std::size_t>(fragment.charFormatIndex())];
            if (!shade)
                shade = shade_of(m_formats[fragment.charFormatIndex()]);
            if (shade->hasProperty(foreground))
                ranges.append({ start, length, *shade });
            start += length;
        }
        return ranges;
    }

private:
    static constexpr auto foreground = QTextFormat::ForegroundBrush;

    /// Without a colour where the format's own are legible.
    QTextCharFormat shade_of(const QTextFormat& format) const
    {
        QTextCharFormat result;
        if (!has_colours(format))
            return result;
        const auto colour = [&](QTextFormat::Property property, const QColor& usual) {
            return has(format, property) ? format.brushProperty(property).color() : usual;
        };
        const QColor ink = colour(foreground, m_text);
        const QColor shade = legible(ink, colour(QTextFormat::BackgroundBrush, m_base));
        if (shade != ink)
            result.setForeground(shade);
        return result;
    }

    const QList<QTextFormat>& m_formats;
    QColor m_text;
    QColor m_base;
    std::vector<std::optional<QTextCharFormat>> m_shades;
};

} // namespace

bool show_legibly(QTextDocument& document, int from, int to, const QPalette& palette)
{
    const QList<QTextFormat> formats = document.allFormats();
    if (std::none_of(formats.begin(), formats.end(), has_colours))
        return false;
    const bool dark = is_dark(palette.color(QPalette::Active, QPalette::Base));
    Shades shades(formats, palette);
    bool changed = false;
    QTextBlock block = document.findBlock(from);
    for (; block.isValid() && block.position() <= to; block = block.next()) {
        const auto ranges = dark ? shades.of(block) : QList<QTextLayout::FormatRange>();
        if (block.layout()->formats() == ranges)
            continue;
        block.layout()->setFormats(ranges);
        changed = true;
    }
    return changed;
}

} // namespace tessavox
