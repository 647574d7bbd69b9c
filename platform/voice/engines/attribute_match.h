// The conditions by which markup asks for a voice.
#pragma once

#include "platform/speech_voice.h"

#include <string>
#include <string_view>
#include <vector>

namespace tessavox::voice {

/// One condition of a list such as "Gender=Female;Name!=Anna;Language=409;Vendor".
class AttributeCondition {
public:
    /// The conditions of a list parted by ';'. Empty ones are left out.
    static std::vector<AttributeCondition> parse(std::string_view list);

    /// Names and values compare without case. A name by itself asks that the attribute be there.
    /// Name also fits the whole description. A language is compared as a hexadecimal number with
    /// each of the token's; a number without a region, such as 9, fits every region. An attribute
    /// that no token has never fits, and always fits with "!=".
    bool fits(const SpeechObjectToken& token) const;

private:
    enum class Relation { present, equal, unequal };
    std::string m_name; // lower case
    std::string m_value;
    Relation m_relation = Relation::present;
};

} // namespace tessavox::voice
