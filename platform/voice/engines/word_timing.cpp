#include "platform/voice/engines/word_timing.h"

#include <algorithm>
#include <optional>

namespace tessavox::voice {

namespace {

// Where the sound before `frame` ends: the start of the pause that leads up to it.
std::uint64_t end_of_sound(
    std::span<const PhoneMark> phones, std::uint64_t begin, std::uint64_t frame)
{
    const auto last = std::ranges::lower_bound(phones, frame, {}, &PhoneMark::frame);
    for (auto phone = last; phone != phones.begin();) {
        --phone;
        if (phone->frame < begin)
            break;
        if (phone->viseme != 0)
            return std::min(frame, phone->frame + phone->frames);
    }
    return frame;
}

std::uint64_t first_sound(std::span<const PhoneMark> phones, std::uint64_t end)
{
    const auto phone
        = std::ranges::find_if(phones, [](const PhoneMark& mark) { return mark.viseme != 0; });
    return phone == phones.end() ? 0 : std::min(phone->frame, end);
}

std::uint64_t nearest_phone(
    std::span<const PhoneMark> phones, std::uint64_t begin, std::uint64_t end, std::uint64_t wanted)
{
    std::optional<std::uint64_t> best;
    const auto distance
        = [&](std::uint64_t frame) { return frame > wanted ? frame - wanted : wanted - frame; };
    for (auto phone = std::ranges::upper_bound(phones, begin, {}, &PhoneMark::frame);
         phone != phones.end() && phone->frame < end; ++phone)
        if (phone->viseme != 0 && (!best || distance(phone->frame) < distance(*best)))
            best = phone->frame;
    return best.value_or(wanted);
}

// Marks tokens [first, last), of which `first` begins at `begin` and all end by `end`.
void share_out(std::span<const Token> tokens, std::uint32_t first, std::uint32_t last,
    std::uint64_t begin, std::uint64_t end, std::span<const PhoneMark> phones,
    std::vector<WordMark>& marks)
{
    std::uint64_t total = 0;
    for (std::uint32_t token = first; token < last; ++token)
        total += std::max(1U, tokens[token].length);
    std::uint64_t passed = 0;
    std::uint64_t at = begin;
    for (std::uint32_t token = first; token < last; ++token) {
        if (token != first) {
            const std::uint64_t wanted = begin + (end - begin) * passed / total;
            at = std::max(at, nearest_phone(phones, at, end, std::max(at, wanted)));
        }
        marks.push_back({ token, at });
        passed += std::max(1U, tokens[token].length);
    }
}

} // namespace

std::vector<HeardToken> rising_run(std::span<const HeardToken> heard)
{
    // Patience sorting.
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::vector<std::size_t> ends; // ends[n]: the report that ends the best run of length n + 1
    std::vector<std::size_t> before(heard.size(), none);
    for (std::size_t at = 0; at < heard.size(); ++at) {
        const auto place = std::ranges::lower_bound(
            ends, heard[at].token, {}, [&](std::size_t index) { return heard[index].token; });
        if (place != ends.begin())
            before[at] = *(place - 1);
        if (place == ends.end())
            ends.push_back(at);
        else if (heard[*place].token > heard[at].token)
            *place = at;
    }
    std::vector<HeardToken> run(ends.size());
    std::size_t at = ends.empty() ? none : ends.back();
    for (std::size_t place = run.size(); place-- > 0; at = before[at])
        run[place] = heard[at];
    return run;
}

std::vector<WordMark> complete_marks(std::span<const Token> tokens,
    std::span<const HeardToken> heard, std::span<const PhoneMark> phones, std::uint64_t end)
{
    std::vector<WordMark> marks;
    if (tokens.empty())
        return marks;
    std::vector<HeardToken> known = rising_run(heard);
    if (known.empty() || known.front().token != 0)
        known.insert(known.begin(),
            { 0, first_sound(phones, known.empty() ? end : std::min(end, known.front().frame)) });

    const auto count = static_cast<std::uint32_t>(tokens.size());
    marks.reserve(count);
    for (std::size_t at = 0; at < known.size(); ++at) {
        const bool is_last = at + 1 == known.size();
        const std::uint32_t next_token = is_last ? count : known[at + 1].token;
        const std::uint64_t begin = std::min(known[at].frame, end);
        const std::uint64_t limit = std::clamp(is_last ? end : known[at + 1].frame, begin, end);
        share_out(tokens, known[at].token, next_token, begin,
            next_token == known[at].token + 1 ? limit : end_of_sound(phones, begin, limit), phones,
            marks);
    }
    return marks;
}

} // namespace tessavox::voice
