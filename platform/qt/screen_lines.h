// Which line on the screen an offset lies in.
#pragma once

#include <vector>

class QTextDocument;

namespace tessavox {

/// The toolkit counts paragraphs only, so the lines of all paragraphs before one are summed up, as
/// far as anybody has asked. Reading on from there costs the same at any place of a long text.
class ScreenLines {
public:
    /// Counted from 0. Lays out the text as far as `offset`, which the view of it needs as well.
    int line_of(const QTextDocument& document, int offset);
    /// The text has changed in the paragraph of this number, or their count has from there on.
    void changed_from(int paragraph);
    void changed() { m_lines_before.clear(); }

private:
    std::vector<int> m_lines_before; // by paragraph
    double m_width = 0; // at which these lines were broken; pixels
};

} // namespace tessavox
