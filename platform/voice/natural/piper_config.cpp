#include "platform/voice/natural/piper_config.h"

#include "platform/failure.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>

namespace tessavox::voice {

namespace {

using Json = nlohmann::json;

constexpr int lowest_rate = 8000;
constexpr int highest_rate = 48000;
constexpr int most_speakers = 100'000;
constexpr std::size_t longest_name = 40;

// Null if it isn't there.
const Json* member_of(const Json& object, const char* key)
{
    const auto member = object.find(key); // the end for what is no object
    return member == object.end() ? nullptr : &*member;
}

std::optional<int> number_of(const Json* value, int lowest, int highest)
{
    if (!value || !value->is_number_integer())
        return std::nullopt;
    const auto number = value->get<std::int64_t>();
    if (number < lowest || number > highest)
        return std::nullopt;
    return static_cast<int>(number);
}

// A name that can stand in a list.
bool is_plain(const std::string& name)
{
    return !name.empty() && name.size() <= longest_name && std::ranges::all_of(name, [](char c) {
        return static_cast<unsigned char>(c) > ' ' && c != '\x7F';
    });
}

std::vector<PiperSpeaker> speakers_of(const Json& config)
{
    const int count = number_of(member_of(config, "num_speakers"), 1, most_speakers).value_or(1);
    if (count == 1)
        return { PiperSpeaker() };
    std::vector<PiperSpeaker> speakers;
    if (const Json* map = member_of(config, "speaker_id_map"); map && map->is_object())
        for (const auto& [name, value] : map->items())
            if (const auto number = number_of(&value, 0, count - 1); number && is_plain(name))
                speakers.push_back({ name, *number });
    std::ranges::stable_sort(speakers, {}, &PiperSpeaker::number);
    const auto same = [](const PiperSpeaker& one, const PiperSpeaker& other) {
        return one.number == other.number;
    };
    speakers.erase(std::unique(speakers.begin(), speakers.end(), same), speakers.end());
    // Without names they are counted.
    if (speakers.empty())
        for (int number = 0; number < std::min<int>(count, most_piper_speakers); ++number)
            speakers.push_back({ std::to_string(number + 1), number });
    if (speakers.size() > most_piper_speakers)
        speakers.resize(most_piper_speakers);
    return speakers;
}

} // namespace

PiperConfig parse_piper_config(std::string_view json)
{
    const Json config = Json::parse(json, nullptr, false);
    if (!config.is_object())
        throw Failure("is no JSON object");
    PiperConfig result;
    const Json* audio = member_of(config, "audio");
    const auto rate
        = number_of(audio ? member_of(*audio, "sample_rate") : nullptr, lowest_rate, highest_rate);
    if (!rate)
        throw Failure("tells no sample rate from " + std::to_string(lowest_rate) + " to "
            + std::to_string(highest_rate) + " in audio.sample_rate");
    result.sample_rate = *rate;
    const Json* espeak = member_of(config, "espeak");
    const Json* voice = espeak ? member_of(*espeak, "voice") : nullptr;
    if (voice && voice->is_string() && is_plain(voice->get<std::string>()))
        result.espeak_voice = voice->get<std::string>();
    result.speakers = speakers_of(config);
    return result;
}

} // namespace tessavox::voice
