// What the small files hold, and how their texts are built. A line's meaning is its number.
#pragma once

#include "persist/text_file.h"

#include <array>
#include <cstdint>
#include <string>

namespace tessavox {

/// The names begin with their own separator although the folder ends in one: all copies of the
/// program and its companions spell the paths in this way.
inline constexpr const char* opened_file = "/opened.txt";
inline constexpr const char* web_file = "/web.txt";
inline constexpr const char* control_file = "/control.txt";
inline constexpr const char* speech_settings_file = "/setting1.txt";
inline constexpr const char* font_settings_file = "/setting2.txt";
inline constexpr const char* history_settings_file = "/setting3.txt";

/// Lines of setting1.txt.
enum SpeechSettingsLine : std::int16_t {
    format_line = 2, // the text of the format list
    voice_line = 3, // the position in the voice list, -1 for none
    speed_line = 4, // -10 to 10
    automatic_reading_line = 5, // 0 or 1
    web_address_line = 6,
};

/// Lines of setting2.txt.
enum FontSettingsLine : std::int16_t {
    font_name_line = 2,
    font_size_line = 3, // points
    font_bold_line = 4, // True or False
};

struct SpeechSettings {
    std::string format;
    int voice;
    int speed;
    int automatic_reading;
    std::string web_address;
};
std::string speech_settings_text(const SpeechSettings& settings);

struct FontSettings {
    std::string name;
    double size; // points
    bool bold;
};
std::string font_settings_text(const FontSettings& settings);

/// Addresses typed into the address box. Gaps are empty; only the first 11 go to the file.
using UrlHistory = std::array<std::string, 21>;
std::string history_settings_text(const UrlHistory& history);

/// web.txt, and control.txt of the same form, hold four flags on the lines 2 to 5.
enum class CommandFlag { none = 0, read_clipboard = 1, pause = 2, stop = 3, clipboard_to_wave = 4 };
/// All flags 0, but for the one given.
std::string command_flags_text(CommandFlag raised);

/// opened.txt says on its line 2 whether a copy of the program runs.
std::string opened_text(bool running);

} // namespace tessavox
