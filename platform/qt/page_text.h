// A text laid out in pages.
#pragma once

#include <QSizeF>

#include <cstdint>
#include <memory>
#include <vector>

class QPaintDevice;
class QPainter;
class QTextDocument;

namespace tessavox {

/// A copy of a text as it stands on pages of one size. Offsets are UTF-16 code units.
class PageText {
public:
    /// Lays it out for `device`, whose unit `page` has. @throws Failure if the page is empty.
    PageText(const QTextDocument& text, QPaintDevice& device, const QSizeF& page);
    ~PageText();

    /// Draws the page that begins with the unit `first` at the painter's origin. Returns where the
    /// next one begins, or the length of the text. @throws Failure if no page begins there.
    std::int32_t draw(QPainter& painter, std::int32_t first) const;

private:
    void find_pages();
    double draw_rest_of_paragraph(
        QPainter& painter, std::int32_t first, std::int32_t end, double top) const;

    struct Page {
        int first; // unit
        int number; // from 0; a line that is higher than a page leaves some empty
    };
    std::unique_ptr<QTextDocument> m_document;
    std::vector<Page> m_pages;
};

} // namespace tessavox
