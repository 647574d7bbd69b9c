// The forms in which a program offers what was copied in it, and the text that they give.
#pragma once

#include "platform/text.h"

#include <QMimeData>
#include <QStringDecoder>

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
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

/// A text that is decoded while it comes, so that a long one needs no moment of its own.
class ComingText {
public:
    explicit ComingText(QStringConverter::Encoding encoding)
        : m_decoder(encoding)
    {
    }
    void add(const QByteArray& piece);
    /// All of it, in a copy that goes on with a blank: what was read is put back with one.
    TextSlice take();

private:
    QStringDecoder m_decoder;
    std::u16string m_text;
};

/// What is asked of one owner, and what it has answered.
class CopiedForms {
public:
    /// Chooses those worth asking for among what is offered.
    void choose(const std::function<bool(const TextForm&)>& is_offered);
    /// Whether anything was chosen.
    bool offer_text() const { return m_offer_text; }
    /// The next one to ask for; null once the text is known.
    const TextForm* next();
    /// A piece of it; false if it is more than the form may have.
    bool add(const QByteArray& piece);
    /// It is all there.
    void complete();
    /// The text, which is forgotten here.
    TextSlice take_text();

private:
    std::vector<const TextForm*> m_to_ask;
    const TextForm* m_asked = nullptr;
    bool m_offer_text = false;
    std::size_t m_size = 0; // so far, of the one that was asked for
    std::optional<ComingText> m_coming; // a plain one
    QByteArray m_bytes; // of any other
    QMimeData m_others; // files and pages
    TextSlice m_plain;
};

} // namespace tessavox
