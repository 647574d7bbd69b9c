#include "platform/voice/natural/natural_voices.h"

#include "platform/failure.h"
#include "platform/text.h"
#include "platform/voice/natural/piper_config.h"
#include "platform/voice/natural/small_file.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <system_error>

#include <unistd.h>

namespace tessavox::voice {

namespace {

namespace fs = std::filesystem;

// Piper's own collection has four levels: language, region, voice, quality.
constexpr int deepest_level = 6;
// A folder with more in it is none of voices.
constexpr int most_files = 20'000;

std::vector<fs::path> files_in(const fs::path& folder, std::string_view suffix)
{
    std::vector<fs::path> files;
    std::error_code error;
    fs::recursive_directory_iterator file(
        folder, fs::directory_options::skip_permission_denied, error);
    for (int count = 0; !error && file != fs::end(file) && count < most_files; ++count) {
        if (file.depth() >= deepest_level)
            file.disable_recursion_pending();
        if (file->path().native().ends_with(suffix))
            files.push_back(file->path());
        file.increment(error);
    }
    std::ranges::sort(files);
    return files;
}

bool is_file(const fs::path& path)
{
    std::error_code error;
    return fs::is_regular_file(path, error);
}

bool is_control(char letter)
{
    return static_cast<unsigned char>(letter) < ' ' || letter == '\x7F';
}

// "northern_english_male" as "Northern English Male".
std::string readable(std::string_view name)
{
    std::string words(name);
    std::ranges::replace(words, '_', ' ');
    for (std::size_t at = 0; at < words.size(); ++at)
        if ((at == 0 || words[at - 1] == ' ') && words[at] >= 'a' && words[at] <= 'z')
            words[at] = static_cast<char>(words[at] - 'a' + 'A');
    return words;
}

// "de", "de_AT" or "es_419".
bool is_locale(std::string_view text)
{
    const auto is_letter = [](char c) { return lower_ascii(c) >= 'a' && lower_ascii(c) <= 'z'; };
    const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
    const std::size_t end = std::min(text.find('_'), text.size());
    const std::string_view region = text.substr(end);
    return (end == 2 || end == 3) && std::ranges::all_of(text.substr(0, end), is_letter)
        && (region.empty()
            || (region.size() == 3 && std::ranges::all_of(region.substr(1), is_letter))
            || (region.size() == 4 && std::ranges::all_of(region.substr(1), is_digit)));
}

/// The parts of a model's name, such as "en_US-lessac-medium".
struct PiperName {
    std::string language; // "en-US"
    std::string voice; // "Lessac"
    std::string quality; // "medium", or empty

    // A name in no such parts is the voice's as it is.
    explicit PiperName(std::string_view stem)
    {
        const std::size_t first = stem.find('-');
        const std::size_t last = stem.rfind('-');
        if (first == std::string_view::npos || !is_locale(stem.substr(0, first))) {
            voice = readable(stem);
            return;
        }
        language = stem.substr(0, first);
        std::ranges::replace(language, '_', '-');
        if (last > first)
            quality = stem.substr(last + 1);
        voice = readable(stem.substr(first + 1, last > first ? last - first - 1 : last));
    }
};

class Search {
public:
    explicit Search(const VoicePrograms& programs)
        : m_programs(programs)
    {
    }

    void add_description(const fs::path& file)
    {
        VoiceDescription description
            = parse_voice_description(read_small_file(file, most_description_bytes));
        const std::string& named = description.command.front();
        const fs::path program
            = find_program(named.starts_with("~/") ? full_path(named, file).string() : named,
                m_programs.search_path);
        if (program.empty())
            throw Failure("no program " + named + " is installed");
        description.command.front() = program;
        for (fs::path& place : description.reads)
            place = full_path(place, file);
        if (!description.model.empty()) {
            description.model = full_path(description.model, file);
            if (!is_file(description.model))
                throw Failure("there is no model " + description.model.string());
        }
        add("voice:" + file.stem().string(), std::move(description), file);
    }

    void add_piper_model(const fs::path& file)
    {
        if (!is_file(file))
            throw Failure("is no plain file");
        const PiperConfig config = config_of(file);
        const std::string stem = file.stem();
        for (const PiperSpeaker& speaker : config.speakers)
            add("piper:" + stem + (speaker.name.empty() ? "" : ":" + speaker.name),
                piper_description(file, config, speaker), file);
    }

    // What goes wrong with a file concerns that file only.
    template <class Add> void add_each(const std::vector<fs::path>& files, Add add)
    {
        for (const fs::path& file : files)
            try {
                (this->*add)(file);
            } catch (const Failure& failure) {
                m_found.unfit.push_back({ file, failure.what() });
            }
    }

    NaturalVoices take_found() { return std::move(m_found); }

private:
    // A path in a description, from its own folder or by "~/" from the user's home.
    fs::path full_path(const fs::path& path, const fs::path& description) const
    {
        const std::string& text = path.native();
        return text.starts_with("~/") ? fs::path(m_programs.home) / text.substr(2)
                                      : description.parent_path() / path;
    }

    static PiperConfig config_of(const fs::path& model)
    {
        const fs::path file = model.string() + ".json";
        try {
            return parse_piper_config(read_small_file(file, most_piper_config_bytes));
        } catch (const Failure& failure) {
            throw Failure("its config " + file.filename().string() + " " + failure.what());
        }
    }

    VoiceDescription piper_description(
        const fs::path& model, const PiperConfig& config, const PiperSpeaker& speaker) const
    {
        const PiperName name(model.stem().string());
        VoiceDescription description;
        description.name = name.voice;
        for (const std::string& part : { speaker.name, name.quality })
            description.name += part.empty() ? "" : " " + part;
        description.language = name.language.empty() ? config.espeak_voice : name.language;
        description.vendor = "Piper";
        description.mode = CommandMode::directory;
        description.command = { m_programs.piper, "--model", "{model}", "--output_dir", "{dir}" };
        description.model = model;
        if (!speaker.name.empty()) {
            description.command.insert(description.command.end(), { "--speaker", "{speaker}" });
            description.speaker = speaker.number;
        }
        description.reference = config.espeak_voice;
        description.sample_rate = config.sample_rate;
        return description;
    }

    void add(std::string id, VoiceDescription description, const fs::path& origin)
    {
        // It stands in lists and settings, one a line.
        if (to_utf8(to_utf16(id)) != id || std::ranges::any_of(id, is_control))
            throw Failure("its name is no plain text");
        if (m_ids.insert(id).second)
            m_found.voices.push_back({ std::move(id), std::move(description), origin });
    }

    const VoicePrograms& m_programs;
    NaturalVoices m_found;
    std::set<std::string> m_ids;
};

} // namespace

NaturalVoices find_natural_voices(const VoiceFolders& folders, const VoicePrograms& programs)
{
    Search search(programs);
    for (const fs::path& folder : folders.descriptions)
        search.add_each(files_in(folder, ".voice"), &Search::add_description);
    if (!programs.piper.empty())
        for (const fs::path& folder : folders.piper)
            search.add_each(files_in(folder, ".onnx"), &Search::add_piper_model);
    return search.take_found();
}

NaturalVoice read_natural_voice(const fs::path& file, const VoicePrograms& programs)
{
    Search search(programs);
    if (file.extension() != ".onnx")
        search.add_description(file);
    else if (programs.piper.empty())
        throw Failure("no program piper or piper-tts is installed");
    else
        search.add_piper_model(file);
    return search.take_found().voices.at(0);
}

std::string find_piper(const std::string& search_path)
{
    if (const fs::path program = find_program("piper-tts", search_path); !program.empty())
        return program;
    // Debian has a program of this name that sets up mice: a short script that opens windows.
    const fs::path program = find_program("piper", search_path);
    constexpr std::size_t longest_script = 65'536;
    std::string script;
    attempt([&] { script = read_small_file(program, longest_script); });
    return script.find("gi.require_version") == std::string::npos ? program : fs::path();
}

fs::path find_program(const std::string& name, const std::string& search_path)
{
    const auto can_be_run
        = [](const fs::path& path) { return is_file(path) && ::access(path.c_str(), X_OK) == 0; };
    if (name.find('/') != std::string::npos) {
        const fs::path path = name;
        return path.is_absolute() && can_be_run(path) ? path : fs::path();
    }
    for (std::size_t at = 0; at <= search_path.size();) {
        const std::size_t end = std::min(search_path.find(':', at), search_path.size());
        const fs::path folder = search_path.substr(at, end - at);
        // A folder that depends on where the program was started is no place for programs.
        if (folder.is_absolute() && can_be_run(folder / name))
            return folder / name;
        at = end + 1;
    }
    return {};
}

} // namespace tessavox::voice
