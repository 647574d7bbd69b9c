#include "platform/voice/engines/voice_catalog.h"

#include "platform/failure.h"
#include "platform/split.h"
#include "platform/text.h"

#include <algorithm>
#include <charconv>

namespace tessavox::voice {

namespace {

std::optional<unsigned> hexadecimal(std::string_view text)
{
    text = trimmed(text);
    if (text.starts_with("0x") || text.starts_with("0X"))
        text.remove_prefix(2);
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

// The low ten bits of a language id are the language, the rest its region.
constexpr unsigned primary_language = 0x3FF;

bool language_fits(std::string_view languages, std::string_view wanted_text)
{
    const auto wanted = hexadecimal(wanted_text);
    return wanted && std::ranges::any_of(split(languages, ';'), [&](std::string_view part) {
        const auto language = hexadecimal(part);
        return language
            && (*language == *wanted
                || (*wanted <= primary_language && (*language & primary_language) == *wanted));
    });
}

const std::string* attribute(const SpeechObjectToken& token, std::string_view name)
{
    struct AttributeRow {
        std::string_view name;
        std::string SpeechObjectToken::*value;
    };
    constexpr AttributeRow rows[] = {
        { "name", &SpeechObjectToken::name },
        { "gender", &SpeechObjectToken::gender },
        { "age", &SpeechObjectToken::age },
        { "language", &SpeechObjectToken::language },
        { "vendor", &SpeechObjectToken::vendor },
    };
    const auto* row = std::ranges::find(rows, name, &AttributeRow::name);
    return row == std::end(rows) ? nullptr : &(token.*row->value);
}

/// One condition of a list such as "Gender=Female;Name!=Anna;Language=409;Vendor".
class AttributeCondition {
public:
    /// The conditions of a list parted by ';'. Empty ones are left out.
    static std::vector<AttributeCondition> parse(std::string_view list)
    {
        std::vector<AttributeCondition> conditions;
        for (const std::string_view each : split(list, ';')) {
            const std::string_view part = trimmed(each);
            AttributeCondition condition;
            const std::size_t equals = part.find('=');
            std::string_view name = part.substr(0, equals);
            if (equals != std::string_view::npos) {
                condition.m_value = lower_ascii(trimmed(part.substr(equals + 1)));
                condition.m_relation = Relation::equal;
                if (name.ends_with('!')) {
                    name.remove_suffix(1);
                    condition.m_relation = Relation::unequal;
                }
            }
            condition.m_name = lower_ascii(trimmed(name));
            if (!condition.m_name.empty())
                conditions.push_back(std::move(condition));
        }
        return conditions;
    }

    /// Names and values compare without case. A name by itself asks that the attribute be there.
    /// Name also fits the whole description. A language is compared as a hexadecimal number with
    /// each of the token's; a number without a region, such as 9, fits every region. An attribute
    /// that no token has never fits, and always fits with "!=".
    bool fits(const SpeechObjectToken& token) const
    {
        const std::string* value = attribute(token, m_name);
        if (m_relation == Relation::present)
            return value && !value->empty();
        bool equal = false;
        if (m_name == "language")
            equal = language_fits(token.language, m_value);
        else if (value)
            equal = lower_ascii(*value) == m_value
                || (m_name == "name" && lower_ascii(token.description) == m_value);
        return equal == (m_relation == Relation::equal);
    }

private:
    enum class Relation { present, equal, unequal };
    std::string m_name; // lower case
    std::string m_value;
    Relation m_relation = Relation::present;
};

struct Fit {
    int voice;
    std::ptrdiff_t wishes; // how many of the optional conditions it meets
};

// The voices that meet all of `required`, in list order.
std::vector<Fit> fits_of(const std::vector<SpeechObjectToken>& tokens, std::string_view required,
    std::string_view optional)
{
    const auto needs = AttributeCondition::parse(required);
    const auto wishes = AttributeCondition::parse(optional);
    std::vector<Fit> fits;
    for (std::size_t voice = 0; voice < tokens.size(); ++voice) {
        const auto fitting
            = [&](const AttributeCondition& condition) { return condition.fits(tokens[voice]); };
        if (std::ranges::all_of(needs, fitting))
            fits.push_back({ static_cast<int>(voice), std::ranges::count_if(wishes, fitting) });
    }
    return fits;
}

} // namespace

VoiceCatalog::VoiceCatalog(std::vector<std::unique_ptr<Engine>> engines)
    : m_engines(std::move(engines))
{
    for (const auto& engine : m_engines)
        for (SpeechObjectToken& token : engine->voices()) {
            m_tokens.push_back(std::move(token));
            m_owners.push_back(engine.get());
        }
}

VoiceCatalog::VoiceCatalog(std::vector<SpeechObjectToken> tokens)
    : m_tokens(std::move(tokens))
{
}

int VoiceCatalog::find(const std::string& id) const
{
    const auto token = std::ranges::find(m_tokens, id, &SpeechObjectToken::id);
    return token == m_tokens.end() ? -1 : static_cast<int>(token - m_tokens.begin());
}

std::vector<int> VoiceCatalog::matching(std::string_view required, std::string_view optional) const
{
    std::vector<Fit> fits = fits_of(m_tokens, required, optional);
    std::ranges::stable_sort(fits, std::greater(), &Fit::wishes);
    std::vector<int> voices;
    voices.reserve(fits.size());
    for (const Fit& fit : fits)
        voices.push_back(fit.voice);
    return voices;
}

std::optional<int> VoiceCatalog::choose(
    std::string_view required, std::string_view optional, int current) const
{
    const std::vector<Fit> fits = fits_of(m_tokens, required, optional);
    if (fits.empty())
        return std::nullopt;
    const auto best = std::ranges::max_element(fits, {}, &Fit::wishes);
    const auto present = std::ranges::find(fits, current, &Fit::voice);
    if (present != fits.end() && present->wishes == best->wishes)
        return current;
    return best->voice;
}

Rendering VoiceCatalog::render(
    int voice, int rate, const Utterance& utterance, const std::atomic<bool>& cancelled) const
{
    if (voice < 0 || static_cast<std::size_t>(voice) >= m_owners.size())
        throw Failure("no voice of this number");
    const auto index = static_cast<std::size_t>(voice);
    return m_owners[index]->render(
        { m_tokens[index].id, std::clamp(rate, -10, 10), &utterance }, cancelled);
}

} // namespace tessavox::voice
