#include "documents/format_commands.h"

#include "documents/document_window.h"
#include "documents/file_commands.h"
#include "forms/command_table.h"
#include "platform/text_case.h"

namespace tessavox {

namespace {

// How far above its line a script stands; twips.
constexpr std::int32_t subscript = -55;
constexpr std::int32_t superscript = 55;
constexpr int screen_and_printer_fonts_with_effects = 259;

using M = MainControls;
using F = FormatCommands;

constexpr CommandRow<F> format_commands[] = {
    { &M::mnuFormatFont, 1402, "F9", call<&F::mnuFormatFont_Click> },
    { &M::mnuFormatSep1 },
    { &M::mnuFormatBullets, 1403, "Ctrl+B", call<&F::mnuFormatBullets_Click> },
    { &M::mnuFormatChangeCase, 1404 },
    { &M::mnuFormatScript, 1408 },
};

constexpr CommandRow<F> case_commands[] = {
    { &M::mnuFormatCSLower, 1405, "", call<&F::mnuFormatCSLower_Click> },
    { &M::mnuFormatCSUpper, 1406, "", call<&F::mnuFormatCSUpper_Click> },
    { &M::mnuFormatCSSC, 1407, "", call<&F::mnuFormatCSSC_Click> },
};

constexpr CommandRow<F> script_commands[] = {
    { &M::mnuFormatSubScript, 1409, "", call<&F::mnuFormatSubScript_Click> },
    { &M::mnuFormatSuperScript, 1410, "", call<&F::mnuFormatSuperScript_Click> },
    { &M::mnuFormatNoScript, 1411, "", call<&F::mnuFormatNoScript_Click> },
};

// The captions of the two tilings are crossed against the names of the items, and stay so.
constexpr CommandRow<F> window_commands[] = {
    { &M::mnuWindowNewWindow, 1602, "", call<&F::mnuWindowNewWindow_Click> },
    { &M::mnuWindowBar0 },
    { &M::mnuWindowCascade, 1603, "", call<&F::mnuWindowCascade_Click> },
    { &M::mnuWindowTileHorizontal, 1604, "", call<&F::mnuWindowTileHorizontal_Click> },
    { &M::mnuWindowTileVertical, 1605, "", call<&F::mnuWindowTileVertical_Click> },
    { &M::mnuWindowArrangeIcons, 1606, "", call<&F::mnuWindowArrangeIcons_Click> },
};

/// What the selection mixes leaves the dialog's value as it is.
template <class Value> void take(Value& kept, const std::optional<Value>& read)
{
    if (read)
        kept = *read;
}

} // namespace

FormatCommands::FormatCommands(
    Process& process, MainControls& main, FileCommands& files, PCCFile& text_file)
    : m_process(process)
    , m_files(files)
    , m_text_file(text_file)
{
    const auto self = [this]() -> F& { return *this; };
    add_commands<F>(main, main.mnuFormat, format_commands, self);
    add_commands<F>(main, main.mnuFormatChangeCase, case_commands, self);
    add_commands<F>(main, main.mnuFormatScript, script_commands, self);
    add_commands<F>(main, main.mnuWindow, window_commands, self);
}

void FormatCommands::mnuFormatFont_Click()
{
    m_font.Flags = screen_and_printer_fonts_with_effects;
    attempt([&] {
        const RichTextPane& pane = ActiveForm(m_process.forms).rtfText.pane();
        take(m_font.FontName, pane.SelFontName());
        take(m_font.FontSize, pane.SelFontSize());
        take(m_font.FontBold, pane.SelBold());
        take(m_font.FontItalic, pane.SelItalic());
        take(m_font.FontUnderline, pane.SelUnderline());
        take(m_font.Color, pane.SelColor());
    });
    attempt([&] { m_process.platform.font_dialogs.ShowFont(m_font); });
    attempt([&] {
        RichTextPane& pane = ActiveForm(m_process.forms).rtfText.pane();
        const OneStep step(pane);
        attempt_each([&] { pane.set_SelFontName(m_font.FontName); },
            [&] { pane.set_SelFontSize(m_font.FontSize); },
            [&] { pane.set_SelBold(m_font.FontBold); },
            [&] { pane.set_SelItalic(m_font.FontItalic); },
            [&] { pane.set_SelStrikeThru(m_font.FontStrikethru); },
            [&] { pane.set_SelUnderline(m_font.FontUnderline); },
            [&] { pane.set_SelColor(m_font.Color); });
    });
    save_font();
}

void FormatCommands::save_font()
{
    m_text_file.WriteToFile(
        font_settings_text({ m_font.FontName, m_font.FontSize, m_font.FontBold }),
        m_process.ConfigFolder + font_settings_file);
}

// Fetching the window makes a document if there is none; the bullets go by the active one.
void FormatCommands::mnuFormatBullets_Click()
{
    attempt([&] { m_files.ActiveDocumentIndex(); });
    ToggleBullet();
}

void FormatCommands::ToggleBullet()
{
    RichTextPane& pane = ActiveForm(m_process.forms).rtfText.pane();
    const OneStep step(pane);
    if (!pane.SelBullet().value_or(false)) {
        pane.set_SelBullet(true);
        return;
    }
    pane.set_SelBullet(false);
    pane.set_SelHangingIndent(0);
}

// The clipboard is the place of the text in between, and holds nothing afterwards.
void FormatCommands::ChangeCase(std::u16string (*convert)(std::u16string_view))
{
    Clipboard& clipboard = m_process.platform.clipboard;
    std::u16string text;
    attempt_each([&] { clipboard.SetText(m_files.active_document().rtfText->SelText()); },
        [&] { text = convert(clipboard.GetText().view()); },
        [&] { m_files.active_document().rtfText->set_SelText(text); }, [&] { clipboard.Clear(); });
}

void FormatCommands::mnuFormatCSLower_Click()
{
    ChangeCase(lower_case);
}

void FormatCommands::mnuFormatCSUpper_Click()
{
    ChangeCase(upper_case);
}

void FormatCommands::mnuFormatCSSC_Click()
{
    ChangeCase(word_capitals);
}

void FormatCommands::mnuFormatSubScript_Click()
{
    m_files.active_document().rtfText->set_SelCharOffset(subscript);
}

void FormatCommands::mnuFormatSuperScript_Click()
{
    m_files.active_document().rtfText->set_SelCharOffset(superscript);
}

void FormatCommands::mnuFormatNoScript_Click()
{
    m_files.active_document().rtfText->set_SelCharOffset(0);
}

void FormatCommands::mnuWindowNewWindow_Click()
{
    m_files.mnuFileNew_Click();
}

void FormatCommands::mnuWindowCascade_Click()
{
    m_process.platform.arrangement.Arrange(Arrangement::cascade);
}

void FormatCommands::mnuWindowTileHorizontal_Click()
{
    m_process.platform.arrangement.Arrange(Arrangement::tile_horizontal);
}

void FormatCommands::mnuWindowTileVertical_Click()
{
    m_process.platform.arrangement.Arrange(Arrangement::tile_vertical);
}

void FormatCommands::mnuWindowArrangeIcons_Click()
{
    m_process.platform.arrangement.Arrange(Arrangement::icons);
}

} // namespace tessavox
