#include "platform/voice/natural/voice_description.h"

#include "platform/failure.h"
#include "platform/split.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <span>

namespace tessavox::voice {

namespace {

constexpr std::size_t longest_name = 100;
constexpr std::size_t most_arguments = 100;
constexpr int highest_speaker = 100'000;
constexpr int lowest_rate = 8000;
constexpr int highest_rate = 48000;

constexpr std::array<std::string_view, 3> genders{ "Male", "Female", "Neutral" };
constexpr std::array<std::string_view, 4> ages{ "Child", "Teen", "Adult", "Senior" };
// ASCII is English, with signs by their names.
constexpr std::array<std::string_view, 5> encodings{ "UTF-8", "ASCII", "ISO-8859-1", "ISO-8859-2",
    "ISO-8859-15" };
constexpr std::array<std::string_view, 6> placeholders{ "{text}", "{out}", "{dir}", "{model}",
    "{speaker}", "{folder}" };

struct ModeRow {
    std::string_view name;
    CommandMode mode;
    std::string_view needed; // a placeholder
    std::string_view allowed; // beside those of all modes
};

constexpr ModeRow modes[] = {
    { "directory", CommandMode::directory, "{dir}", "" },
    { "wave", CommandMode::wave, "{out}", "{text}" },
    { "frames", CommandMode::frames, "", "" },
};

std::string quoted(std::string_view text)
{
    constexpr std::size_t longest = 40;
    return '"' + std::string(text.substr(0, longest)) + (text.size() > longest ? "..." : "") + '"';
}

std::string one_of(std::string_view value, std::span<const std::string_view> choices)
{
    if (std::ranges::find(choices, value) != choices.end())
        return std::string(value);
    std::string list;
    for (const std::string_view choice : choices)
        list += (list.empty() ? "" : ", ") + std::string(choice);
    throw Failure(quoted(value) + " is none of " + list);
}

int number_in(std::string_view value, int lowest, int highest)
{
    int number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc() || end != value.data() + value.size() || number < lowest
        || number > highest)
        throw Failure(quoted(value) + " is no number from " + std::to_string(lowest) + " to "
            + std::to_string(highest));
    return number;
}

// A language and its subtags, such as "de", "zh-Hant-TW" or "es-419".
std::string language_tag(std::string_view value)
{
    const auto is_letter = [](char c) { return (c | 32) >= 'a' && (c | 32) <= 'z'; };
    const auto is_subtag = [&](std::string_view part) {
        return !part.empty() && part.size() <= 8 && std::ranges::all_of(part, [&](char c) {
            return is_letter(c) || (c >= '0' && c <= '9');
        });
    };
    const std::string_view first = value.substr(0, value.find('-'));
    bool good = first.size() >= 2 && first.size() <= 3 && std::ranges::all_of(first, is_letter);
    for (std::size_t at = first.size(); good && at < value.size();) {
        const std::size_t end = std::min(value.find('-', at + 1), value.size());
        good = is_subtag(value.substr(at + 1, end - at - 1));
        at = end;
    }
    if (!good)
        throw Failure(quoted(value) + " is no language; write it as \"en\" or \"pt-BR\"");
    return std::string(value);
}

CommandMode mode_of(std::string_view value)
{
    const auto* row = std::ranges::find(modes, value, &ModeRow::name);
    if (row == std::end(modes))
        throw Failure(quoted(value) + " is none of directory, wave, frames");
    return row->mode;
}

void check_placeholders(std::string_view argument)
{
    for (std::size_t at = 0; (at = argument.find('{', at)) != std::string_view::npos; ++at) {
        const std::size_t end = argument.find('}', at);
        const std::string_view name
            = argument.substr(at, end == argument.npos ? end : end + 1 - at);
        if (std::ranges::find(placeholders, name) == placeholders.end())
            throw Failure(
                quoted(name) + " is none of {text} {out} {dir} {model} {speaker} {folder}");
    }
}

std::vector<std::string> command_of(std::string_view value)
{
    std::vector<std::string> command = split_arguments(value);
    if (command.size() > most_arguments)
        throw Failure("more than " + std::to_string(most_arguments) + " arguments");
    if (command.front().empty())
        throw Failure("the program has no name");
    if (command.front().find('{') != std::string::npos)
        throw Failure("the program itself can't be a placeholder");
    for (const std::string& argument : command)
        check_placeholders(argument);
    return command;
}

struct KeyRow {
    std::string_view key;
    bool required;
    void (*set)(VoiceDescription& description, std::string_view value);
};

constexpr KeyRow keys[] = {
    { "Name", true,
        [](VoiceDescription& description, std::string_view value) {
            if (value.size() > longest_name)
                throw Failure("longer than " + std::to_string(longest_name) + " bytes");
            description.name = value;
        } },
    { "Language", true,
        [](VoiceDescription& description, std::string_view value) {
            description.language = language_tag(value);
        } },
    { "Mode", true,
        [](VoiceDescription& description, std::string_view value) {
            description.mode = mode_of(value);
        } },
    { "Command", true,
        [](VoiceDescription& description, std::string_view value) {
            description.command = command_of(value);
        } },
    { "Gender", false,
        [](VoiceDescription& description, std::string_view value) {
            description.gender = one_of(value, genders);
        } },
    { "Age", false,
        [](VoiceDescription& description, std::string_view value) {
            description.age = one_of(value, ages);
        } },
    { "Vendor", false,
        [](VoiceDescription& description, std::string_view value) { description.vendor = value; } },
    { "Model", false,
        [](VoiceDescription& description, std::string_view value) { description.model = value; } },
    { "Speaker", false,
        [](VoiceDescription& description, std::string_view value) {
            description.speaker = number_in(value, 0, highest_speaker);
        } },
    { "Reads", false,
        [](VoiceDescription& description, std::string_view value) {
            for (const std::string& path : split_arguments(value))
                description.reads.emplace_back(path);
        } },
    { "Encoding", false,
        [](VoiceDescription& description, std::string_view value) {
            description.encoding = one_of(value, encodings);
        } },
    { "Reference", false,
        [](VoiceDescription& description, std::string_view value) {
            description.reference = value;
        } },
    { "SampleRate", false,
        [](VoiceDescription& description, std::string_view value) {
            description.sample_rate = number_in(value, lowest_rate, highest_rate);
        } },
};

void check_text(std::string_view text)
{
    if (text.size() > most_description_bytes)
        throw Failure("longer than " + std::to_string(most_description_bytes) + " bytes");
    if (to_utf8(to_utf16(text)) != text)
        throw Failure("is no UTF-8 text");
}

// One line: a key and its value, or nothing.
void read_line(
    std::string_view line, VoiceDescription& description, std::set<std::string_view>& seen)
{
    line = trimmed(line);
    if (line.empty() || line.front() == '#')
        return;
    const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\t'; };
    if (std::ranges::any_of(line, is_control))
        throw Failure("a control character");
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        throw Failure("no \"=\" after the key");
    const std::string_view key = trimmed(line.substr(0, equals));
    const std::string_view value = trimmed(line.substr(equals + 1));
    const auto* row = std::ranges::find(keys, key, &KeyRow::key);
    if (row == std::end(keys))
        throw Failure("no key is called " + quoted(key));
    if (!seen.insert(row->key).second)
        throw Failure(std::string(key) + " stands here a second time");
    if (value.empty())
        throw Failure(std::string(key) + " is empty");
    row->set(description, value);
}

void check_whole(const VoiceDescription& description, const std::set<std::string_view>& seen)
{
    for (const KeyRow& row : keys)
        if (row.required && !seen.contains(row.key))
            throw Failure(std::string(row.key) + " is missing");
    const auto& command = description.command;
    const auto* mode = std::ranges::find(modes, description.mode, &ModeRow::mode);
    const std::string of_mode = " in the command of mode " + std::string(mode->name);
    if (!mode->needed.empty() && !has_placeholder(command, mode->needed))
        throw Failure("no " + std::string(mode->needed) + of_mode);
    for (const std::string_view placeholder : { "{text}", "{out}", "{dir}" })
        if (has_placeholder(command, placeholder) && placeholder != mode->needed
            && placeholder != mode->allowed)
            throw Failure("no place for " + std::string(placeholder) + of_mode);
    if (has_placeholder(command, "{model}") && description.model.empty())
        throw Failure("Model is missing, which the command asks for");
    if (has_placeholder(command, "{speaker}") && !description.speaker)
        throw Failure("Speaker is missing, which the command asks for");
}

} // namespace

VoiceDescription parse_voice_description(std::string_view text)
{
    check_text(text);
    VoiceDescription description;
    std::set<std::string_view> seen;
    for (std::size_t at = 0, number = 1; at < text.size(); ++number) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        try {
            read_line(text.substr(at, end - at), description, seen);
        } catch (const Failure& failure) {
            throw Failure("line " + std::to_string(number) + ": " + failure.what());
        }
        at = end + 1;
    }
    check_whole(description, seen);
    return description;
}

std::vector<std::string> split_arguments(std::string_view line)
{
    std::vector<std::string> arguments;
    bool quoting = false;
    bool between = true; // two arguments
    for (std::size_t at = 0; at < line.size(); ++at) {
        char letter = line[at];
        if (!quoting && (letter == ' ' || letter == '\t')) {
            between = true;
            continue;
        }
        if (between)
            arguments.emplace_back();
        between = false;
        if (letter == '"') {
            quoting = !quoting;
            continue;
        }
        if (letter == '\\' && at + 1 < line.size())
            letter = line[++at];
        arguments.back() += letter;
    }
    if (quoting)
        throw Failure("a quote is left open");
    return arguments;
}

bool has_placeholder(const std::vector<std::string>& command, std::string_view placeholder)
{
    return std::ranges::any_of(command, [&](const std::string& argument) {
        return argument.find(placeholder) != std::string::npos;
    });
}

} // namespace tessavox::voice
