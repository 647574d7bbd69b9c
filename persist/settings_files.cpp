#include "persist/settings_files.h"

#include "platform/number_text.h"

#include <span>

namespace tessavox {

namespace {

constexpr const char* line_end = "\r\n";
constexpr std::size_t stored_addresses = 11;

} // namespace

std::string speech_settings_text(const SpeechSettings& settings)
{
    std::string text = line_end;
    text += settings.format + line_end;
    text += with_sign_position(settings.voice) + line_end;
    text += with_sign_position(settings.speed) + line_end;
    text += with_sign_position(settings.automatic_reading) + line_end;
    text += settings.web_address + line_end;
    return text;
}

std::string font_settings_text(const FontSettings& settings)
{
    return line_end + settings.name + line_end + with_sign_position(settings.size) + line_end
        + (settings.bold ? "True" : "False") + line_end;
}

std::string history_settings_text(const UrlHistory& history)
{
    std::string text = line_end;
    for (const std::string& address : std::span(history).first<stored_addresses>()) {
        if (!address.empty())
            text += address + line_end;
    }
    return text;
}

std::string command_flags_text(CommandFlag raised)
{
    std::string text = line_end;
    for (int flag = 1; flag <= 4; ++flag)
        text += (flag == static_cast<int>(raised) ? "1" : "0") + std::string(line_end);
    return text;
}

std::string opened_text(bool running)
{
    return std::string(line_end) + (running ? "1" : "0") + line_end;
}

} // namespace tessavox
