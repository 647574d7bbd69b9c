// The clipboard of the desktop.
#pragma once

#include "platform/text.h"

namespace tessavox {

/// How long a reader of the clipboard waits for the program that owns it.
enum class Patience {
    some, // 0.3 s: a user has asked for the text
    none, // whoever looks in again and again takes the text when it is at hand
};

/// Text on the clipboard. Files that were copied are their paths, one a line; a page that comes
/// without a plain form is its words; anything else counts as no text, and so does a text of more
/// than the most_text_bytes that a document may have.
class Clipboard {
public:
    virtual ~Clipboard() = default;
    /// The empty text if there is none, or if its owner doesn't give it in time. Until something is
    /// copied again it is the very same slice. Another program's text is fetched once after each
    /// change, from the first read on and beside the message loop, so what one read doesn't wait
    /// for is at hand at a later one. An owner that never answered is asked again.
    virtual TextSlice GetText(Patience patience = Patience::some) = 0;
    /// Whether there is text, as far as is known without waiting for anybody.
    virtual bool has_text() = 0;
    /// Puts a text there that GetText gives at once; an empty one counts as none.
    /// @throws Failure if the desktop doesn't take it.
    virtual void SetText(const TextSlice& text) = 0;
    /// Takes away whatever is there, whoever owns it.
    virtual void Clear() = 0;
};

} // namespace tessavox
