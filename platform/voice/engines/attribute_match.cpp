#include "platform/voice/engines/attribute_match.h"

#include "platform/text.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace tessavox::voice {

namespace {

constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

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
    while (wanted && !languages.empty()) {
        const std::size_t end = std::min(languages.find(';'), languages.size());
        if (const auto language = hexadecimal(languages.substr(0, end)))
            if (*language == *wanted
                || (*wanted <= primary_language && (*language & primary_language) == *wanted))
                return true;
        languages.remove_prefix(std::min(end + 1, languages.size()));
    }
    return false;
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

} // namespace

std::vector<AttributeCondition> AttributeCondition::parse(std::string_view list)
{
    std::vector<AttributeCondition> conditions;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(';'), list.size());
        const std::string_view part = trimmed(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
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

bool AttributeCondition::fits(const SpeechObjectToken& token) const
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

} // namespace tessavox::voice
