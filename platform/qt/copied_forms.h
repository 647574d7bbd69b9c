// The forms in which a program offers what was copied in it, and the text that they give.
#pragma once

#include "platform/text.h"

#include <QMimeData>
#include <QStringConverter>

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace tessavox {

/// A form of text: what its owner calls it, the format that it comes in, and in which encoding.
struct TextForm {
    const char* name;
    const char* format;
    QStringConverter::Encoding encoding;
    std::size_t most_bytes;
};

/// All that text is taken from, the best one first.
std::span<const TextForm> text_forms();

/// What is asked of one owner, and what it has answered.
class CopiedForms {
public:
    /// Chooses those worth asking for among what is offered.
    void choose(const std::function<bool(const TextForm&)>& is_offered);
    /// Whether anything was chosen.
    bool offer_text() const { return m_offer_text; }
    /// The next one to ask for; null once the text is known.
    const TextForm* next();
    void add(const TextForm& form, const QByteArray& bytes);
    /// The text, which is forgotten here.
    TextSlice take_text();

private:
    std::vector<const TextForm*> m_to_ask;
    bool m_offer_text = false;
    QMimeData m_others; // files and pages
    TextSlice m_plain;
};

} // namespace tessavox
