#include "speech/page_text.h"

#include "forms/document_controls.h"
#include "platform/clipboard.h"

#include <algorithm>
#include <iterator>

namespace tessavox {

namespace {

constexpr std::string_view endings_of_documents[] = { ".doc", ".rtf", ".pdf" };

} // namespace

bool shows_document(const DocumentControls& document)
{
    const std::string address = lower_ascii(document.Combo1.Text.get());
    return std::any_of(std::begin(endings_of_documents), std::end(endings_of_documents),
        [&](std::string_view ending) { return address.ends_with(ending); });
}

TextSlice copied_page_text(DocumentControls& document, Clipboard& clipboard)
{
    WebBrowser& page = document.WebBrowser1;
    page.SetFocus();
    clipboard.Clear();
    page->ExecWB(WebCommand::copy);
    TextSlice selected = clipboard.GetText();
    if (!selected.empty())
        return selected;
    page->ExecWB(WebCommand::select_all);
    page->ExecWB(WebCommand::copy);
    return clipboard.GetText();
}

} // namespace tessavox
