// The pane that holds a document's text. The text buffer lives here alone.
#pragma once

#include "platform/printer.h"
#include "platform/text.h"
#include "platform/text_search.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tessavox {

/// What a file holds, by the numbers that LoadFile and SaveFile have always known them by.
enum class TextKind { rich = 0, plain = 1 };

/// A colour as one number.
constexpr std::int32_t RGB(int red, int green, int blue)
{
    return red + green * 0x100 + blue * 0x10000;
}
/// Whatever colour the desktop gives to text.
constexpr std::int32_t automatic_color = -1;

/// Offsets and lengths are UTF-16 code units; a line end counts one, in Text, SelText and SelStart
/// alike. Costs of reading and setting the selection don't grow with the text.
///
/// A format is that of the selection, or of what is typed next while nothing is selected; bullets
/// and indents are those of the paragraphs that the selection touches. Where it mixes several, the
/// format reads as nothing. Setting one of a selection's, or of a paragraph's, runs Change, since
/// the document that would be saved is another.
class RichTextPane {
public:
    virtual ~RichTextPane() = default;

    /// The whole text, line ends as LF. Repeated calls between two changes share one copy.
    virtual TextSlice Text() const = 0;
    /// Replaces the text, and runs Change. CRLF and CR become LF; what no text pane can hold (NUL
    /// and the noncharacters U+FDD0, U+FDD1; object replacement) becomes U+FFFD or a blank. In
    /// an empty pane it gets the format of what would be typed, otherwise the pane's font.
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
    /// Puts a text in the selection's place, formatted as its first character was, and the caret
    /// after it. Runs Change, unless nothing takes the place of nothing. The text is made to fit as
    /// in set_Text.
    virtual void set_SelText(std::u16string text) = 0;
    /// The same, but the source of a rich text (it begins with "{\\rtf") comes in as that text,
    /// with its own formats. @throws Failure for one with too many paragraphs or too long ones.
    virtual void set_SelRTF(const std::u16string& source) = 0;

    /// Searches from `start` to the end and selects the first match; `options` are those of
    /// TextSearch. Returns its offset, or -1: then, and for an empty text, the selection stays.
    /// @throws Failure if `start` is negative.
    virtual std::int32_t Find(const std::u16string& text, std::int32_t start, int options) = 0;

    /// The line on the screen, from 0, that holds the offset.
    virtual std::int32_t GetLineFromChar(std::int32_t offset) const = 0;

    virtual std::optional<bool> SelBold() const = 0;
    virtual void set_SelBold(bool bold) = 0;
    virtual std::optional<bool> SelItalic() const = 0;
    virtual void set_SelItalic(bool italic) = 0;
    virtual std::optional<bool> SelUnderline() const = 0;
    virtual void set_SelUnderline(bool underline) = 0;
    virtual std::optional<bool> SelStrikeThru() const = 0;
    virtual void set_SelStrikeThru(bool strike) = 0;
    /// The name of a family of fonts. @throws Failure if it is empty.
    virtual std::optional<std::string> SelFontName() const = 0;
    virtual void set_SelFontName(const std::string& name) = 0;
    /// Points. @throws Failure if it is not above 0.
    virtual std::optional<double> SelFontSize() const = 0;
    virtual void set_SelFontSize(double points) = 0;
    /// As RGB() makes it, or automatic_color.
    virtual std::optional<std::int32_t> SelColor() const = 0;
    virtual void set_SelColor(std::int32_t color) = 0;
    /// How far text stands above its line; twips, below 0 when it stands below.
    virtual std::optional<std::int32_t> SelCharOffset() const = 0;
    virtual void set_SelCharOffset(std::int32_t twips) = 0;
    virtual std::optional<bool> SelBullet() const = 0;
    virtual void set_SelBullet(bool bullet) = 0;
    /// How much further in than its first line the other lines of a paragraph begin; twips.
    virtual std::optional<std::int32_t> SelHangingIndent() const = 0;
    virtual void set_SelHangingIndent(std::int32_t twips) = 0;

    /// The font of all text that has none of its own. @throws Failure for a name that is empty, or
    /// a size that is not above 0.
    virtual void set_FontName(const std::string& name) = 0;
    virtual void set_FontSize(double points) = 0;
    virtual void set_FontBold(bool bold) = 0;

    /// False keeps the selection visible while another control has the focus.
    virtual void set_HideSelection(bool hide) = 0;
    /// What the mouse pointer looks like over the text: 0 as usual, 99 another one.
    virtual void set_MousePointer(int pointer) = 0;
    /// The width at which text wraps; twips from the left edge. 0: the pane's own width.
    /// @throws Failure if negative.
    virtual void set_RightMargin(double twips) = 0;

    /// Replaces the text by that of a file, and runs Change as set_Text does. The encoding, mark
    /// and line ends of a plain text are kept for SaveFile. @throws Failure, and leaves everything
    /// as it was, if the file can't be read, is too large, or is no rich text though it should be.
    virtual void LoadFile(const std::string& path, TextKind kind) = 0;
    /// Writes the text so that it is on the disk afterwards. The old file stays whole if that
    /// fails. @throws Failure then.
    virtual void SaveFile(const std::string& path, TextKind kind) = 0;

    /// What is done between the two calls is one step for undo, runs Change and SelChange once at
    /// its end at most, and isn't drawn before that. Thousands of changes cost little so. Pairs may
    /// be nested. OneStep below calls them.
    virtual void begin_step() = 0;
    virtual void end_step() = 0;

    /// Prints as much of the text as the area takes on the job's page, from the unit `first` on,
    /// and returns the first one that did not fit, or the length of the text. Colours and formats
    /// are those of the pane, the selection isn't shown. The text as it was for the first page, the
    /// one with `first` 0, is kept until release_format. @throws Failure if the area is empty, or
    /// `first` isn't where a page ended.
    virtual std::int32_t FormatRange(PrintJob& job, const PageArea& area, std::int32_t first) = 0;
    virtual void release_format() = 0;

    std::function<void()> Change; // the text has changed
    std::function<void()> SelChange; // caret or selection has changed
    /// A mouse button was released: 1 left, 2 right. `shift` has 1 for Shift, 2 for Control, 4 for
    /// Alt. The key for menus counts as 2. Whoever listens shows the menu of the text.
    std::function<void(int button, int shift)> MouseUp;
};

/// A step of its user, from here to the end of the block.
class OneStep {
public:
    explicit OneStep(RichTextPane& pane)
        : m_pane(pane)
    {
        m_pane.begin_step();
    }
    ~OneStep() { m_pane.end_step(); }
    OneStep(const OneStep&) = delete;
    OneStep& operator=(const OneStep&) = delete;

private:
    RichTextPane& m_pane;
};

class RichTextPanes {
public:
    virtual ~RichTextPanes() = default;
    virtual std::unique_ptr<RichTextPane> create() = 0;
};

} // namespace tessavox
