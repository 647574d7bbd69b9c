#include "forms/string_table.h"

#include "platform/failure.h"

#include <algorithm>
#include <string>

namespace tessavox {

namespace {

// By rising number, as the lookup halves its way. The blanks at the ends of menu texts make room
// for the column of shortcuts.
constexpr StringRow neutral_rows[] = {
    { 1000, "&File" },
    { 1001, "&New" },
    { 1002, "&Open..." },
    { 1003, "&Save" },
    { 1004, "Save &As..." },
    { 1005, "&Print..." },
    { 1006, "&Close" },
    { 1007, "E&xit" },
    { 1018, "New" },
    { 1019, "Open" },
    { 1020, "Save" },
    { 1021, "Save As..." },
    { 1022, "Print" },
    { 1023, "Exit" },
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
    { 1202, "Cu&t                           " },
    { 1203, "&Copy                        " },
    { 1204, "&Paste                         " },
    { 1205, "&Select All                    " },
    { 1206, "&Find and Replace" },
    { 1207, "Cut" },
    { 1208, "Copy" },
    { 1209, "Paste" },
    { 1210, "Select All" },
    { 1401, "&Format" },
    { 1402, "F&ont" },
    { 1403, "&Bullets" },
    { 1404, "&Change Case" },
    { 1405, "&lower case" },
    { 1406, "&UPPERCASE" },
    { 1407, "&Sentence Case" },
    { 1408, "&Script" },
    { 1409, "su&bScript" },
    { 1410, "su&perScripte" },
    { 1411, "&no scipt" },
    { 1421, "Font" },
    { 1501, "&Insert" },
    { 1502, "&Voice tag" },
    { 1503, "&Speed tag" },
    { 1504, "S&pell tag" },
    { 1505, "S&ilence tag" },
    { 1601, "&Window" },
    { 1602, "&New Window" },
    { 1603, "&Cascade" },
    { 1604, "Tile &Vertical" },
    { 1605, "Tile &Horizontal" },
    { 1606, "&Arrange Icons" },
    { 1701, "&Help" },
    { 1702, "Help &File" },
    { 1703, "&Email to us" },
    { 1705, "View Our Website" },
    { 1706, "&About " },
    { 1707, "About " },
    { 1710, "Help File" },
    { 1800, "&Website" },
    { 1900, "Popmenu" },
    { 1901, "Show Software" },
    { 1921, "Close" },
    { 1927, "Stop" },
    { 1928, "Read Clipboard" },
    { 1929, "Pause" },
    { 1930, "Read To File" },
    { 1931, "Play File" },
    { 1932, "Main Windows" },
    { 1936, "Status:" },
    { 1937, "Stopped" },
    { 1938, "File Location" },
    { 1939, "Record" },
    { 1940, "Stop" },
    { 2000, "Tessavox:Right click to show options" },
    { 2001, "No opened documents!" },
    { 2013, "Version:3.5.1" },
    { 2014, "&Close" },
    { 2056, "Text not found" },
    { 2057, "The Specified Region Has Been Searched." },
    { 2058, " replacements have been made." },
    { 2059, "&Find Next" },
    { 2060, "&Find" },
    { 2061, "&Replace.." },
    { 2062, "Replace &All" },
    { 2063, "Replace with" },
    { 2064, "Find Whole Word Only" },
    { 2065, "Match Case" },
    { 2066, "&Cancel" },
    { 2067, "Find" },
    { 2070, "Tessavox has been opened." },
    { 2071, "Close" },
    { 2072, "Open a new window >>>" },
    { 2080, "Speed" },
    { 2081, "Silence Time" },
    { 2082, "Milliseconds" },
    { 2084, "Help" },
    { 2085, "Please select one voice" },
    { 2086, "OK" },
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
    { 2117, "Web" },
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
    { 2131, "View in web format" },
    { 2200, "Back" },
    { 2201, "Forward" },
    { 2202, "Refresh" },
    { 2203, "Search" },
    { 2204, "Stop" },
    { 2205, "Tessavox" },
    { 2206, "Line Number: " },
    { 2300, "Default output" },
    { 2301, "%1 cannot be written. Choose another name or another folder." },
    { 2302, "The folder of %1 does not exist. Choose another one." },
    { 2303, "The file %1 could not be written. Its former content is unchanged." },
    { 2304, "The speech is being written into the file. Escape ends it." },
    { 2305, "No sound: the output does not answer" },
    { 2306, "No audio ouput object available" },
    { 2307, "File Saved" },
    { 2308, "The software setting files %1 have been moved, please reinstall our software again" },
    { 2309, "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav" },
    { 2310,
        "Text files (*.txt)|*.txt|Ini Files (*.ini)|*.ini|Registry Files (*.log)|*.log|"
        "Batch File (*.bat)|*.bat|All files (*.*)|*.*" },
    { 2311, "Read and Save the text in clipboard into Wav file" },
    { 2312, "Tool bar" },
    { 2313, "Status bar" },
};

constexpr bool by_number(const StringRow& left, const StringRow& right)
{
    return left.id < right.id;
}
static_assert(std::is_sorted(std::begin(neutral_rows), std::end(neutral_rows), by_number));

/// The texts come in blocks of 16 numbers.
constexpr int block_of(int id)
{
    return id / 16;
}

auto place_of(std::span<const StringRow> rows, int id)
{
    return std::lower_bound(rows.begin(), rows.end(), StringRow{ id, nullptr }, by_number);
}

bool has_block(std::span<const StringRow> rows, int id)
{
    const auto first = place_of(rows, block_of(id) * 16);
    return first != rows.end() && block_of(first->id) == block_of(id);
}

} // namespace

std::span<const StringRow> neutral_strings()
{
    return neutral_rows;
}

std::string StringTable::LoadResString(int id) const
{
    const std::span<const StringRow> rows = has_block(m_own, id) ? m_own : m_neutral;
    const auto found = place_of(rows, id);
    if (found == rows.end() || found->id != id)
        throw Failure("no text has the number " + std::to_string(id));
    return found->text;
}

} // namespace tessavox
