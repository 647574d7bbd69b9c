#include "platform/voice/engines/espeak_voice_list.h"

#include "platform/split.h"
#include "platform/text.h"
#include "platform/voice/engines/language_ids.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <tuple>

namespace tessavox::voice {

namespace {

constexpr bool is_lower(char letter)
{
    return letter >= 'a' && letter <= 'z';
}

bool stays_small(std::string_view word)
{
    constexpr std::array<std::string_view, 5> small{ "as", "of", "the", "and", "in" };
    return std::ranges::find(small, word) != small.end();
}

// The library writes names as "English_(America,_New_York_City)".
std::string readable(std::string name)
{
    std::ranges::replace_if(
        name, [](char letter) { return letter == '_' || letter == '-'; }, ' ');
    while (!name.empty() && name.back() == ' ')
        name.pop_back();
    for (std::size_t at = 0; at < name.size(); ++at) {
        const bool begins_word = at == 0 || name[at - 1] == ' ' || name[at - 1] == '(';
        if (!begins_word || !is_lower(name[at]))
            continue;
        const std::size_t end = std::min(name.find_first_of(" ,)", at), name.size());
        if (at == 0 || !stays_small(std::string_view(name).substr(at, end - at)))
            name[at] = static_cast<char>(name[at] - 32);
    }
    return name;
}

std::string age_of(int years)
{
    if (years == 0)
        return "Adult";
    return years < 13 ? "Child" : years < 20 ? "Teen" : years < 60 ? "Adult" : "Senior";
}

// A lower place stands further up: the user's own region, then the language elsewhere, then the
// user's next language, and behind them everything else.
std::size_t place_of(const std::string& tag, const std::vector<std::string>& languages)
{
    std::size_t place = 0;
    for (const std::string& language : languages) {
        const std::string primary = language.substr(0, language.find('-'));
        if (tag == language)
            return place;
        if (tag == primary)
            return place + 1;
        if (tag.starts_with(primary + "-"))
            return place + 2;
        place += 3;
    }
    return place;
}

struct Listed {
    std::size_t place;
    SpeechObjectToken token;
};

Listed list_voice(const EspeakVoice& voice, const std::vector<std::string>& languages)
{
    SpeechObjectToken token;
    token.id = std::string(espeak_id_prefix) + voice.identifier;
    token.name = readable(voice.name);
    // A voice file that states no gender speaks with the library's own voice, which is male.
    token.gender = voice.gender == 2 ? "Female" : "Male";
    token.description = token.name + (voice.gender == 2 ? ", female" : ", male");
    token.age = age_of(voice.age);
    token.language = language_ids_of(voice.language);
    token.vendor = "eSpeak NG";
    return { place_of(voice.language, languages), std::move(token) };
}

} // namespace

std::string tag_of_locale(std::string_view locale)
{
    std::string tag = lower_ascii(locale.substr(0, locale.find_first_of(".@")));
    std::ranges::replace(tag, '_', '-');
    return tag == "c" || tag == "posix" ? std::string() : tag;
}

std::vector<std::string> languages_of_user()
{
    std::vector<std::string> tags;
    const auto add = [&](std::string_view locale) {
        std::string tag = tag_of_locale(locale);
        if (!tag.empty() && std::ranges::find(tags, tag) == tags.end())
            tags.push_back(std::move(tag));
    };
    const char* list = std::getenv("LANGUAGE");
    for (const std::string_view locale : split(list ? list : "", ':'))
        add(locale);
    for (const char* variable : { "LC_ALL", "LC_MESSAGES", "LANG" })
        if (const char* locale = std::getenv(variable); locale && *locale) {
            add(locale);
            break;
        }
    add("en_US");
    return tags;
}

std::vector<SpeechObjectToken> espeak_tokens(
    const std::vector<EspeakVoice>& voices, const std::vector<std::string>& languages)
{
    std::vector<Listed> listed;
    listed.reserve(voices.size());
    for (const EspeakVoice& voice : voices)
        listed.push_back(list_voice(voice, languages));
    std::ranges::sort(listed, {}, [](const Listed& entry) {
        return std::tie(entry.place, entry.token.description, entry.token.id);
    });
    std::map<std::string, int> seen;
    std::vector<SpeechObjectToken> tokens;
    for (Listed& entry : listed) {
        if (const int count = ++seen[entry.token.description]; count > 1)
            entry.token.description.append(1, ' ').append(std::to_string(count));
        tokens.push_back(std::move(entry.token));
    }
    return tokens;
}

} // namespace tessavox::voice
