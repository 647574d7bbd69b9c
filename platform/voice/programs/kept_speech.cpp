#include "platform/voice/programs/kept_speech.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

constexpr double most_seconds = 60;
// A cut in the middle of speech would click.
constexpr double fade_seconds = 0.003;

double seconds_of(const Rendering& rendering)
{
    return static_cast<double>(rendering.samples.size()) / rendering.sample_rate;
}

bool is_end_of(const Utterance& end, const Utterance& whole)
{
    return !end.tokens.empty() && end.tokens.size() <= whole.tokens.size()
        && end.ends_sentence == whole.ends_sentence && end.style == whole.style
        && whole.text.ends_with(end.text)
        && whole.text.size() - whole.tokens[whole.tokens.size() - end.tokens.size()].begin
        == end.text.size() - end.tokens.front().begin;
}

Rendering cut_before(const Rendering& whole, std::size_t token)
{
    const std::uint64_t cut = whole.words[token].frame;
    Rendering rest;
    rest.sample_rate = whole.sample_rate;
    rest.samples.assign(
        whole.samples.begin() + static_cast<std::ptrdiff_t>(cut), whole.samples.end());
    const auto fade
        = std::min(static_cast<std::size_t>(fade_seconds * rest.sample_rate), rest.samples.size());
    for (std::size_t at = 0; at < fade; ++at)
        rest.samples[at] = static_cast<std::int16_t>(
            rest.samples[at] * static_cast<int>(at) / static_cast<int>(fade));
    for (std::size_t at = token; at < whole.words.size(); ++at) {
        WordMark word = whole.words[at];
        word.token -= static_cast<std::uint32_t>(token);
        word.frame -= cut;
        rest.words.push_back(word);
    }
    for (PhoneMark phone : whole.phones)
        if (phone.frame + phone.frames > cut) {
            const std::uint64_t end = phone.frame + phone.frames - cut;
            phone.frame = std::max(phone.frame, cut) - cut;
            phone.frames = end - phone.frame;
            rest.phones.push_back(phone);
        }
    return rest;
}

} // namespace

std::optional<Rendering> KeptSpeech::find(
    const std::string& voice_id, const Utterance& utterance) const
{
    for (auto kept = m_kept.rbegin(); kept != m_kept.rend(); ++kept)
        if (kept->voice_id == voice_id && is_end_of(utterance, kept->utterance)) {
            const std::size_t token = kept->utterance.tokens.size() - utterance.tokens.size();
            return token == 0 ? kept->rendering : cut_before(kept->rendering, token);
        }
    return std::nullopt;
}

void KeptSpeech::keep(
    const std::string& voice_id, const Utterance& utterance, const Rendering& rendering)
{
    m_kept.push_back({ voice_id, utterance, rendering });
    m_seconds += seconds_of(rendering);
    while (m_seconds > most_seconds && m_kept.size() > 1) {
        m_seconds -= seconds_of(m_kept.front().rendering);
        m_kept.pop_front();
    }
}

} // namespace tessavox::voice
