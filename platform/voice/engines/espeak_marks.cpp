#include "platform/voice/engines/espeak_marks.h"

#include "platform/text.h"
#include "platform/voice/engines/phone_tables.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

std::vector<bool> blanks_of(const SpokenText& text)
{
    std::vector<bool> blanks;
    for (std::size_t at = 0; at < text.utf8.size();)
        blanks.push_back(next_character(text.utf8, at) == U' ');
    return blanks;
}

/// Collects what one call reports.
class Reports {
public:
    Reports(const SpokenText& text, const EspeakReports& reports)
        : m_text(text)
        , m_blanks(blanks_of(text))
        , m_reports(reports)
        , m_phones(reports.sound.phones)
    {
    }

    std::vector<HeardToken> heard() const
    {
        const auto& words = m_reports.sound.words;
        std::vector<HeardToken> heard;
        bool after_blank = false;
        for (std::size_t at = m_reports.first_word; at < words.size(); ++at) {
            const std::uint32_t place = words[at].position;
            if (place >= m_text.tokens.size())
                continue;
            const bool blank = m_blanks[place];
            // A third word of one token is told at the place of the next token, which then is told
            // twice.
            const bool told_again = at + 1 < words.size() && words[at + 1].position == place;
            if (!(blank && is_told(place + 1)) && !(after_blank && told_again))
                heard.push_back(begin_of(words[at], m_text.tokens[place]));
            after_blank = blank;
        }
        return heard;
    }

private:
    bool is_told(std::uint32_t place) const
    {
        const auto& words = m_reports.sound.words;
        return std::any_of(words.begin() + static_cast<std::ptrdiff_t>(m_reports.first_word),
            words.end(), [&](const EspeakSound::Word& word) { return word.position == place; });
    }

    HeardToken begin_of(const EspeakSound::Word& word, std::uint32_t token) const
    {
        const auto next = m_phones.begin() + static_cast<std::ptrdiff_t>(word.phone);
        const auto sounding = std::find_if(next, m_phones.end(), is_sounding);
        const bool with_phone_before
            = word.phone > m_reports.first_phone && std::prev(next)->frame == word.frame;
        const bool with_pause = sounding != next;
        if (sounding != m_phones.end() && (with_phone_before || with_pause))
            return { token, sounding->frame, word.phone };
        return { token, word.frame, word.phone };
    }

    const SpokenText& m_text;
    const std::vector<bool> m_blanks;
    const EspeakReports& m_reports;
    const std::vector<EspeakSound::Phone>& m_phones;
};

// Gives the tokens between `first` and `last`, of which the first is known, the phones from
// `begin` to `end`, counted from the end. Each keeps one at least.
void count_back(std::uint32_t first, std::uint32_t last, const std::vector<std::uint32_t>& sounding,
    const EspeakSound& sound, const PhonesOfToken& phones_of, std::vector<HeardToken>& heard)
{
    std::vector<HeardToken> found;
    std::size_t place = sounding.size();
    for (std::uint32_t token = last; --token > first;) {
        const std::size_t count = phones_of(token);
        const std::size_t before = token - first; // tokens that need a phone each
        if (count == 0 || place <= before)
            break;
        place -= std::min(count, place - before);
        found.push_back({ token, sound.phones[sounding[place]].frame, sounding[place] });
    }
    heard.insert(heard.end(), found.rbegin(), found.rend());
}

} // namespace

std::vector<HeardToken> heard_tokens(
    const SpokenText& text, const EspeakReports& reports, const PhonesOfToken& phones_of)
{
    const std::vector<HeardToken> known = rising_run(Reports(text, reports).heard());
    const std::vector<EspeakSound::Phone>& phones = reports.sound.phones;
    std::vector<HeardToken> heard;
    for (std::size_t at = 0; at < known.size(); ++at) {
        heard.push_back(known[at]);
        const bool last = at + 1 == known.size();
        const std::uint32_t next_token = last ? text.tokens.back() + 1 : known[at + 1].token;
        if (next_token <= known[at].token + 1)
            continue;
        std::vector<std::uint32_t> sounding;
        const std::size_t end = last ? phones.size() : known[at + 1].phone;
        for (std::size_t phone = known[at].phone; phone < end; ++phone)
            if (is_sounding(phones[phone]))
                sounding.push_back(static_cast<std::uint32_t>(phone));
        count_back(known[at].token, next_token, sounding, reports.sound, phones_of, heard);
    }
    return heard;
}

bool is_sounding(const EspeakSound::Phone& phone)
{
    return !phone.mnemonic.starts_with('_') && viseme_of_espeak(phone.mnemonic) != 0;
}

std::size_t count_phones(std::string_view phonemes)
{
    std::size_t count = 0;
    for (std::size_t at = 0; at < phonemes.size();) {
        const std::size_t end = std::min(phonemes.find_first_of(" -", at), phonemes.size());
        std::string_view name = phonemes.substr(at, end - at);
        name.remove_prefix(std::min(name.find_first_not_of("',%="), name.size()));
        if (!name.empty() && !name.starts_with('_') && viseme_of_espeak(name) != 0)
            ++count;
        at = end + 1;
    }
    return count;
}

} // namespace tessavox::voice
