#include "platform/voice/rendering/render_wire.h"

#include "platform/failure.h"

#include <array>
#include <cstring>
#include <type_traits>

namespace tessavox::voice {

namespace {

class Writer {
public:
    explicit Writer(WireBytes& out)
        : m_out(out)
    {
    }

    template <class Number> void number(Number value)
    {
        static_assert(std::is_arithmetic_v<Number>);
        raw(&value, sizeof value);
    }

    template <class Sequence> void sequence(const Sequence& items)
    {
        static_assert(std::is_trivially_copyable_v<typename Sequence::value_type>);
        number(static_cast<std::uint32_t>(items.size()));
        raw(items.data(), items.size() * sizeof(typename Sequence::value_type));
    }

private:
    void raw(const void* data, std::size_t size)
    {
        const auto* bytes = static_cast<const std::byte*>(data);
        m_out.insert(m_out.end(), bytes, bytes + size);
    }

    WireBytes& m_out;
};

class Reader {
public:
    explicit Reader(std::span<const std::byte> bytes)
        : m_rest(bytes)
    {
    }

    template <class Number> Number number()
    {
        static_assert(std::is_arithmetic_v<Number>);
        Number value;
        raw(&value, sizeof value);
        return value;
    }

    int number_between(int lowest, int highest)
    {
        const auto value = number<std::int32_t>();
        if (value < lowest || value > highest)
            throw Failure("a number out of its range in a message");
        return value;
    }

    bool flag() { return number_between(0, 1) != 0; }

    template <class Sequence> Sequence sequence()
    {
        using Item = typename Sequence::value_type;
        const auto count = number<std::uint32_t>();
        if (count > m_rest.size() / sizeof(Item))
            throw Failure("a message ends too soon");
        Sequence items(count, Item());
        raw(items.data(), count * sizeof(Item));
        return items;
    }

    void end() const
    {
        if (!m_rest.empty())
            throw Failure("a message is too long");
    }

private:
    void raw(void* data, std::size_t size)
    {
        if (size > m_rest.size())
            throw Failure("a message ends too soon");
        if (size != 0)
            std::memcpy(data, m_rest.data(), size);
        m_rest = m_rest.subspan(size);
    }

    std::span<const std::byte> m_rest;
};

// Leaves room for the header and fills it in when the message after it is complete.
class Message {
public:
    Message(WireBytes& out, std::uint64_t job)
        : m_out(out)
        , m_begin(out.size())
        , m_job(job)
    {
        out.resize(out.size() + sizeof(WireHeader));
    }
    void complete()
    {
        WireHeader header;
        header.job = m_job;
        header.length = static_cast<std::uint32_t>(m_out.size() - m_begin - sizeof header);
        std::memcpy(m_out.data() + m_begin, &header, sizeof header);
    }

private:
    WireBytes& m_out;
    std::size_t m_begin;
    std::uint64_t m_job;
};

void write_style(Writer& writer, const SpeechStyle& style)
{
    writer.number(std::int32_t{ style.rate });
    writer.number(std::int32_t{ style.pitch });
    writer.number(std::int32_t{ style.emphasis });
    writer.number(std::int32_t{ style.spell });
    writer.number(std::int32_t{ style.speak_punctuation });
}

SpeechStyle read_style(Reader& reader)
{
    SpeechStyle style;
    style.rate = reader.number<std::int32_t>();
    style.pitch = reader.number<std::int32_t>();
    style.emphasis = reader.flag();
    style.spell = reader.flag();
    style.speak_punctuation = reader.flag();
    return style;
}

void check_tokens(const Utterance& utterance)
{
    std::uint64_t end = 0;
    for (const Token& token : utterance.tokens) {
        if (token.begin < end)
            throw Failure("the tokens of a message don't rise");
        end = std::uint64_t{ token.begin } + token.length;
    }
    if (end > utterance.text.size())
        throw Failure("a token of a message lies outside of its text");
}

void read_contexts(Reader& reader, Utterance& utterance)
{
    std::uint64_t end = 0;
    for (auto count = reader.number<std::uint32_t>(); count > 0; --count) {
        ContextHint hint;
        hint.begin = reader.number<std::uint32_t>();
        hint.length = reader.number<std::uint32_t>();
        hint.context = reader.sequence<std::string>();
        if (hint.begin < end)
            throw Failure("the contexts of a message don't rise");
        end = std::uint64_t{ hint.begin } + hint.length;
        utterance.contexts.push_back(std::move(hint));
    }
    if (end > utterance.text.size())
        throw Failure("a context of a message lies outside of its text");
}

std::vector<WordMark> read_words(Reader& reader, std::size_t tokens, std::size_t frames)
{
    auto words = reader.sequence<std::vector<WordMark>>();
    if (words.size() != tokens)
        throw Failure("an answer marks other words than were asked for");
    std::uint64_t before = 0;
    for (std::size_t at = 0; at < words.size(); ++at) {
        if (words[at].token != at || words[at].frame < before || words[at].frame > frames)
            throw Failure("an answer has a word out of place");
        before = words[at].frame;
    }
    return words;
}

std::vector<PhoneMark> read_phones(Reader& reader, std::size_t frames)
{
    auto phones = reader.sequence<std::vector<PhoneMark>>();
    constexpr int last_viseme = 21;
    for (const PhoneMark& phone : phones)
        if (phone.frame > frames || phone.frames > frames - phone.frame
            || phone.viseme > last_viseme)
            throw Failure("an answer has a phone out of place");
    return phones;
}

// In the order in which they travel.
constexpr std::array token_texts{ &SpeechObjectToken::id, &SpeechObjectToken::description,
    &SpeechObjectToken::name, &SpeechObjectToken::gender, &SpeechObjectToken::age,
    &SpeechObjectToken::language, &SpeechObjectToken::vendor };

} // namespace

void append_request(WireBytes& out, std::uint64_t job, const WireRequest& request)
{
    Message message(out, job);
    Writer writer(out);
    writer.sequence(request.voice_id);
    writer.number(std::int32_t{ request.rate });
    const Utterance& utterance = request.utterance;
    writer.sequence(utterance.text);
    writer.sequence(utterance.tokens);
    writer.number(static_cast<std::uint32_t>(utterance.pronunciation.size()));
    for (const std::string& part : utterance.pronunciation)
        writer.sequence(part);
    writer.number(std::int32_t{ utterance.ends_sentence });
    write_style(writer, utterance.style);
    writer.number(static_cast<std::uint32_t>(utterance.contexts.size()));
    for (const ContextHint& hint : utterance.contexts) {
        writer.number(hint.begin);
        writer.number(hint.length);
        writer.sequence(hint.context);
    }
    message.complete();
}

WireRequest read_request(std::span<const std::byte> bytes)
{
    Reader reader(bytes);
    WireRequest request;
    request.voice_id = reader.sequence<std::string>();
    request.rate = reader.number_between(-10, 10);
    Utterance& utterance = request.utterance;
    utterance.text = reader.sequence<std::u16string>();
    utterance.tokens = reader.sequence<std::vector<Token>>();
    check_tokens(utterance);
    for (auto parts = reader.number<std::uint32_t>(); parts > 0; --parts)
        utterance.pronunciation.push_back(reader.sequence<std::string>());
    utterance.ends_sentence = reader.flag();
    utterance.style = read_style(reader);
    read_contexts(reader, utterance);
    reader.end();
    return request;
}

void append_answer(WireBytes& out, std::uint64_t job, const std::optional<Rendering>& rendering)
{
    Message message(out, job);
    Writer writer(out);
    writer.number(std::int32_t{ rendering.has_value() });
    if (rendering) {
        writer.number(std::int32_t{ rendering->sample_rate });
        writer.sequence(rendering->samples);
        writer.sequence(rendering->words);
        writer.sequence(rendering->phones);
    }
    message.complete();
}

std::optional<Rendering> read_answer(std::span<const std::byte> bytes, std::size_t tokens)
{
    Reader reader(bytes);
    std::optional<Rendering> rendering;
    if (reader.flag()) {
        constexpr int highest_rate = 192'000;
        rendering.emplace();
        rendering->sample_rate = reader.number_between(1, highest_rate);
        rendering->samples = reader.sequence<std::vector<std::int16_t>>();
        rendering->words = read_words(reader, tokens, rendering->samples.size());
        rendering->phones = read_phones(reader, rendering->samples.size());
    }
    reader.end();
    return rendering;
}

void append_greeting(WireBytes& out, const std::vector<SpeechObjectToken>& voices)
{
    Message message(out, 0);
    Writer writer(out);
    writer.number(static_cast<std::uint32_t>(voices.size()));
    for (const SpeechObjectToken& voice : voices)
        for (const auto text : token_texts)
            writer.sequence(voice.*text);
    message.complete();
}

std::vector<SpeechObjectToken> read_greeting(std::span<const std::byte> bytes)
{
    Reader reader(bytes);
    std::vector<SpeechObjectToken> voices;
    for (auto count = reader.number<std::uint32_t>(); count > 0; --count) {
        SpeechObjectToken& voice = voices.emplace_back();
        for (const auto text : token_texts)
            voice.*text = reader.sequence<std::string>();
    }
    reader.end();
    return voices;
}

void append_drop(WireBytes& out, std::uint64_t last_job)
{
    Message(out, last_job).complete();
}

std::optional<WireHeader> peek_header(std::span<const std::byte> bytes)
{
    WireHeader header;
    if (bytes.size() < sizeof header)
        return std::nullopt;
    std::memcpy(&header, bytes.data(), sizeof header);
    if (header.magic != WireHeader::wire_magic || header.length > longest_message)
        throw Failure("no message where one should begin");
    return header;
}

} // namespace tessavox::voice
