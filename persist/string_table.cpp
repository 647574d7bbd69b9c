#include "persist/string_table.h"

#include "platform/failure.h"

#include <algorithm>
#include <iterator>

namespace tessavox {

namespace {

struct StringRow {
    int id;
    const char* text;
};

// By rising number, as the lookup halves its way. The blanks at the ends of menu texts make room
// for the column of shortcuts.
constexpr StringRow neutral_strings[] = {
    { 1000, "&File" },
    { 1001, "&New" },
    { 1003, "&Save" },
    { 1004, "Save &As..." },
    { 1005, "&Print..." },
    { 1006, "&Close" },
    { 1007, "E&xit" },
    { 1018, "New" },
    { 1020, "Save" },
    { 1101, "&Control" },
    { 1102, "&Speak                                " },
    { 1103, "S&top                                 " },
    { 1104, "&Pause                                " },
    { 1105, "Read &Clipboard                  " },
    { 1106, "Speak to &File                                       " },
    { 1107, "P&lay                                    " },
    { 1108, "Save Clipboard to &Wav" },
    { 1129, "Read" },
    { 1130, "Stop" },
    { 1131, "Pause" },
    { 1132, "Read Clipboard" },
    { 1133, "Read to File" },
    { 1134, "Play File" },
    { 1135, "Save Clipboard to File" },
    { 1201, "&Edit" },
    { 1401, "&Format" },
    { 1501, "&Insert" },
    { 1601, "&Window" },
    { 1800, "&Website" },
    { 2070, "Tessavox has been opened." },
    { 2071, "Close" },
    { 2072, "Open a new window >>>" },
    { 2100, "Speaking Speed: " },
    { 2101, "Speaker:  " },
    { 2102, "This document has been changed. Do you wish to save?" },
    { 2103, "Save to a Wave File" },
    { 2104, "WAV file successfully written!" },
    { 2105, "Save to Wave file Error:" },
    { 2106, "Speak a Wave File" },
    { 2107, "Resume" },
    { 2109, "Speaker" },
    { 2110, "Format" },
    { 2111, "Speed" },
    { 2112, "Volume" },
    { 2113, "Read clipboard Automatically" },
    { 2114, "Reset" },
    { 2116, "Text" },
    { 2118, "Dock" },
    { 2119, "Read the selected text" },
    { 2120, "Stop Reading" },
    { 2121, "Pause/reasume reading" },
    { 2122, "Select one voice" },
    { 2123, "Select voice format" },
    { 2124, "Check to read the text in clipboard automatically" },
    { 2125, "Reset setting into default value" },
    { 2126, "Read and Save the text into Wav file" },
    { 2127, "Play a wav file" },
    { 2128, "Read the text in clipboard" },
    { 2129, "Dock software windows" },
    { 2130, "View in Rich Text Format" },
    { 2205, "Tessavox" },
    { 2206, "Line Number: " },
};

static_assert(std::is_sorted(std::begin(neutral_strings), std::end(neutral_strings),
    [](const StringRow& left, const StringRow& right) { return left.id < right.id; }));

} // namespace

std::string LoadResString(int id)
{
    const auto found = std::lower_bound(std::begin(neutral_strings), std::end(neutral_strings), id,
        [](const StringRow& row, int wanted) { return row.id < wanted; });
    if (found == std::end(neutral_strings) || found->id != id)
        throw Failure("no text has the number " + std::to_string(id));
    return found->text;
}

} // namespace tessavox
