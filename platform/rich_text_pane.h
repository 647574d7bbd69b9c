// The pane that holds a document's text. The text buffer lives here alone.
#pragma once

#include "platform/text.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace tessavox {

/// Offsets and lengths are UTF-16 code units; a line end counts one, in Text, SelText and SelStart
/// alike. Costs of the selection calls don't grow with the text.
class RichTextPane {
public:
    virtual ~RichTextPane() = default;

    /// The whole text, line ends as LF. Repeated calls between two changes share one copy.
    virtual TextSlice Text() const = 0;
    /// Replaces the text, and runs Change. CRLF and CR become LF; what no text pane can hold (NUL
    /// and the noncharacters U+FDD0, U+FDD1; object replacement) becomes U+FFFD or a blank.
    virtual void set_Text(std::u16string text) = 0;

    virtual std::int32_t SelStart() const = 0;
    /// Moves the caret there and selects nothing; past the end counts as the end.
    /// @throws Failure if negative.
    virtual void set_SelStart(std::int32_t offset) = 0;
    virtual std::int32_t SelLength() const = 0;
    /// Selects that many units from SelStart on, cut at the end of the text. Brings a selection of
    /// ordinary size into view; a huge one leaves the view at its start. @throws Failure if
    /// negative.
    virtual void set_SelLength(std::int32_t length) = 0;
    /// The selected part of Text(), sharing its copy.
    virtual TextSlice SelText() const = 0;

    /// The line on the screen, from 0, that holds the offset.
    virtual std::int32_t GetLineFromChar(std::int32_t offset) const = 0;

    /// Of the selection, or of what is typed next; points. @throws Failure if it is not above 0.
    virtual void set_SelFontSize(double points) = 0;
    /// The font of all text that has none of its own. @throws Failure for a name that is empty, or
    /// a size that is not above 0.
    virtual void set_FontName(const std::string& name) = 0;
    virtual void set_FontSize(double points) = 0;
    virtual void set_FontBold(bool bold) = 0;

    /// False keeps the selection visible while another control has the focus.
    virtual void set_HideSelection(bool hide) = 0;
    /// The width at which text wraps; twips from the left edge. 0: the pane's own width.
    /// @throws Failure if negative.
    virtual void set_RightMargin(double twips) = 0;

    std::function<void()> Change; // the text has changed
    std::function<void()> SelChange; // caret or selection has changed
    /// A mouse button was released: 1 left, 2 right. `shift` has 1 for Shift, 2 for Control, 4 for
    /// Alt.
    std::function<void(int button, int shift)> MouseUp;
};

class RichTextPanes {
public:
    virtual ~RichTextPanes() = default;
    virtual std::unique_ptr<RichTextPane> create() = 0;
};

} // namespace tessavox
