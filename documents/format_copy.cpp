#include "documents/format_copy.h"

#include "documents/document_window.h"
#include "platform/number_text.h"

#include <cmath>

namespace tessavox {

namespace {

constexpr int usual_pointer = 0;
constexpr int custom_pointer = 99;

std::int16_t flag(bool value)
{
    return value ? -1 : 0;
}

void set_pointers(DocumentTables& tables, int pointer)
{
    for (int i = 1; i <= tables.openDocumentCount; ++i)
        attempt([&] {
            if (const auto& window = tables.documentWindows[i - 1])
                window->rtfText->set_MousePointer(pointer);
        });
}

// What the selection mixes leaves a field as it is.
void take(Process& process)
{
    FormatCopy& copy = process.format_copy;
    set_pointers(process.tables, custom_pointer);
    attempt([&] {
        const RichTextPane& pane = ActiveForm(process.forms).rtfText.pane();
        const auto keep = [](auto& field, const auto& read, const auto& convert) {
            if (read)
                field = convert(*read);
        };
        keep(copy.FormatCopyBold, pane.SelBold(), flag);
        keep(copy.FormatCopyItalic, pane.SelItalic(), flag);
        keep(copy.FormatCopyUnderline, pane.SelUnderline(), flag);
        keep(copy.FormatCopyStrike, pane.SelStrikeThru(), flag);
        keep(copy.FormatCopyFont, pane.SelFontName(), [](const std::string& name) { return name; });
        keep(copy.FormatCopySize, pane.SelFontSize(),
            [](double points) { return static_cast<std::int16_t>(std::nearbyint(points)); });
        keep(copy.FormatCopyColor, pane.SelColor(),
            [](std::int32_t color) { return std::to_string(color); });
    });
    copy.FormatCopyState = 2;
    attempt([&] { ActiveForm(process.forms).rtfText->set_SelLength(0); });
}

void give(Process& process)
{
    FormatCopy& copy = process.format_copy;
    attempt([&] {
        RichTextPane& pane = ActiveForm(process.forms).rtfText.pane();
        const OneStep step(pane);
        attempt_each([&] { pane.set_SelBold(copy.FormatCopyBold == -1); },
            [&] { pane.set_SelItalic(copy.FormatCopyItalic == -1); },
            [&] { pane.set_SelUnderline(copy.FormatCopyUnderline == -1); },
            [&] { pane.set_SelStrikeThru(copy.FormatCopyStrike == -1); },
            [&] { pane.set_SelFontName(copy.FormatCopyFont); },
            [&] { pane.set_SelFontSize(copy.FormatCopySize); },
            [&] {
                if (!copy.FormatCopyColor.empty())
                    pane.set_SelColor(leading_number(copy.FormatCopyColor));
            });
    });
    copy.FormatCopyState = 3;
    set_pointers(process.tables, usual_pointer);
}

} // namespace

void FormatCopyStep(Process& process)
{
    if (process.format_copy.FormatCopyState == 1)
        take(process);
    else if (process.format_copy.FormatCopyState == 2)
        give(process);
}

} // namespace tessavox
