#include "documents/printing.h"

#include "platform/failure.h"

#include <cstdint>

namespace tessavox {

void PrintRichText(
    RichTextPane& pane, Printer& printer, const std::string& title, const PageMargins& margins)
try {
    const std::unique_ptr<PrintJob> job = printer.begin(title);
    const PageArea area{ margins.left - job->left_offset(), margins.top - job->top_offset(),
        job->Width() - margins.right - job->left_offset(),
        job->Height() - margins.bottom - job->top_offset() };
    const auto length = static_cast<std::int32_t>(pane.Text().size());
    std::int32_t first = pane.FormatRange(*job, area, 0);
    while (first < length) {
        job->NewPage();
        first = pane.FormatRange(*job, area, first);
    }
    job->EndDoc();
    pane.release_format();
} catch (const Failure&) {
    // Silent, also without any printer: there is nothing that a user could choose instead.
}

} // namespace tessavox
