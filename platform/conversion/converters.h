// Which programs turn which documents into plain text, or pages of the web, and how they are
// called.
#pragma once

#include <cstdint>
#include <string_view>

namespace tessavox {

/// By the first bytes of a file, whatever its name.
enum class DocumentKind { ole, html, zip, pdf, other };

struct Converter {
    const char* name; // of the row
    const char* program; // a full path
    unsigned kinds; // bits by DocumentKind
    /// Arguments, up to a null, for a run in the private folder on the copy of the document. "%1"
    /// stands for that folder.
    const char* arguments[10];
    bool prints; // the text, instead of writing its file
    int most_seconds; // what takes longer hangs
};

constexpr unsigned bit(DocumentKind kind)
{
    return 1U << static_cast<unsigned>(kind);
}

constexpr const char* converted_document = "document.doc";
constexpr const char* converted_text = "document.txt";
constexpr const char* converted_page = "document.html";

/// In the order in which they are tried: the better they know the format, the earlier.
constexpr Converter converters[] = {
    { "soffice", "/usr/bin/soffice",
        bit(DocumentKind::ole) | bit(DocumentKind::html) | bit(DocumentKind::zip),
        { "--headless", "--norestore", "--nologo", "--nolockcheck", "--nodefault",
            "-env:UserInstallation=file://%1/profile", "--convert-to", "txt:Text (encoded):UTF8",
            converted_document },
        false, 30 },
    { "antiword", "/usr/bin/antiword", bit(DocumentKind::ole),
        { "-m", "UTF-8.txt", "-w", "0", converted_document }, true, 10 },
    { "catdoc", "/usr/bin/catdoc", bit(DocumentKind::ole),
        { "-d", "utf-8", "-w", converted_document }, true, 10 },
    // With pictures of all that is no text, then, where that takes too long, without.
    { "pdf", "/usr/bin/pdftohtml", bit(DocumentKind::pdf),
        { "-q", "-c", "-s", "-noframes", "-dataurls", converted_document, converted_page }, false,
        10 },
    { "pdf text", "/usr/bin/pdftohtml", bit(DocumentKind::pdf),
        { "-q", "-c", "-i", "-s", "-noframes", converted_document, converted_page }, false, 20 },
};

constexpr const Converter* converter_for(std::string_view name)
{
    for (const Converter& converter : converters) {
        if (name == converter.name)
            return &converter;
    }
    return nullptr;
}

} // namespace tessavox
