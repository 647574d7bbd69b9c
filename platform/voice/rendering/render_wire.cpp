#include "platform/voice/rendering/render_wire.h"

#include "platform/failure.h"

#include <algorithm>
#include <concepts>
#include <cstring>
#include <type_traits>

namespace tessavox::voice {

namespace {

template <class Type>
concept Sequence = requires(Type sequence)
{
    sequence.push_back(*sequence.begin());
};

template <class Type>
concept Plain = std::is_trivially_copyable_v<typename Type::value_type>;

template <class Type, class Kind>
concept Some = std::same_as<std::remove_const_t<Type>, Kind>;

// What travels of each kind, in its order: the same list writes a message and reads it.

void carry(auto& wire, Some<SpeechStyle> auto& style)
{
    wire(style.rate, style.pitch, style.emphasis, style.spell, style.speak_punctuation);
}

void carry(auto& wire, Some<ContextHint> auto& hint)
{
    wire(hint.begin, hint.length, hint.context);
}

void carry(auto& wire, Some<WireRequest> auto& request)
{
    auto& utterance = request.utterance;
    wire(request.voice_id, request.rate, utterance.text, utterance.tokens, utterance.pronunciation,
        utterance.ends_sentence, utterance.style, utterance.contexts);
}

void carry(auto& wire, Some<Rendering> auto& rendering)
{
    wire(rendering.sample_rate, rendering.samples, rendering.words, rendering.phones);
}

void carry(auto& wire, Some<SpeechObjectToken> auto& voice)
{
    wire(voice.id, voice.description, voice.name, voice.gender, voice.age, voice.language,
        voice.vendor);
}

class Writer {
public:
    explicit Writer(WireBytes& out)
        : m_out(out)
    {
    }

    template <class... Values> void operator()(const Values&... values) { (put(values), ...); }

private:
    template <class Value> void put(const Value& value)
    {
        if constexpr (std::is_arithmetic_v<Value>) {
            raw(&value, sizeof value);
        } else if constexpr (Sequence<Value>) {
            put(static_cast<std::uint32_t>(value.size()));
            if constexpr (Plain<Value>)
                raw(value.data(), value.size() * sizeof(typename Value::value_type));
            else
                for (const auto& each : value)
                    put(each);
        } else {
            carry(*this, value);
        }
    }

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

    template <class... Values> void operator()(Values&... values) { (get(values), ...); }

    void end() const
    {
        if (!m_rest.empty())
            throw Failure("a message is too long");
    }

private:
    template <class Value> void get(Value& value)
    {
        if constexpr (std::same_as<Value, bool>) {
            std::uint8_t number = 0;
            get(number);
            value = number != 0;
        } else if constexpr (std::is_arithmetic_v<Value>) {
            raw(&value, sizeof value);
        } else if constexpr (Sequence<Value>) {
            std::uint32_t count = 0;
            get(count);
            // Of what is no plain sequence each item takes a byte at least.
            if (count > m_rest.size() / (Plain<Value> ? sizeof(typename Value::value_type) : 1))
                throw Failure("a message ends too soon");
            value.resize(Plain<Value> ? count : 0);
            if constexpr (Plain<Value>)
                raw(value.data(), count * sizeof(typename Value::value_type));
            else
                for (; count > 0; --count)
                    get(value.emplace_back());
        } else {
            carry(*this, value);
        }
    }

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

void require(bool holds, const char* otherwise)
{
    if (!holds)
        throw Failure(otherwise);
}

// Tokens and contexts alike.
template <class Extent> void check_extents(const std::vector<Extent>& extents, std::size_t size)
{
    std::uint64_t end = 0;
    for (const Extent& extent : extents) {
        require(extent.begin >= end, "the extents of a message don't rise");
        end = std::uint64_t{ extent.begin } + extent.length;
    }
    require(end <= size, "an extent of a message lies outside of its text");
}

void check_rendering(const Rendering& rendering, std::size_t tokens)
{
    constexpr int highest_rate = 192'000;
    constexpr int last_viseme = 21;
    const std::size_t frames = rendering.samples.size();
    require(rendering.sample_rate >= 1 && rendering.sample_rate <= highest_rate,
        "a number out of its range in a message");
    require(rendering.words.size() == tokens, "an answer marks other words than were asked for");
    std::uint64_t before = 0;
    for (std::size_t at = 0; at < tokens; ++at) {
        const WordMark& word = rendering.words[at];
        require(word.token == at && word.frame >= before && word.frame <= frames,
            "an answer has a word out of place");
        before = word.frame;
    }
    for (const PhoneMark& phone : rendering.phones)
        require(phone.frame <= frames && phone.frames <= frames - phone.frame
                && phone.viseme <= last_viseme,
            "an answer has a phone out of place");
}

template <class... Values> void append(WireBytes& out, std::uint64_t job, const Values&... values)
{
    const std::size_t begin = out.size();
    out.resize(begin + sizeof(WireHeader));
    Writer writer(out);
    writer(values...);
    WireHeader header;
    header.job = job;
    header.length = static_cast<std::uint32_t>(out.size() - begin - sizeof header);
    std::memcpy(out.data() + begin, &header, sizeof header);
}

} // namespace

void append_request(WireBytes& out, std::uint64_t job, const WireRequest& request)
{
    append(out, job, request);
}

WireRequest read_request(std::span<const std::byte> bytes)
{
    Reader reader(bytes);
    WireRequest request;
    reader(request);
    reader.end();
    require(request.rate >= -10 && request.rate <= 10, "a rate out of its range in a message");
    check_extents(request.utterance.tokens, request.utterance.text.size());
    check_extents(request.utterance.contexts, request.utterance.text.size());
    return request;
}

void append_answer(WireBytes& out, std::uint64_t job, const std::optional<Rendering>& rendering)
{
    if (rendering)
        append(out, job, true, *rendering);
    else
        append(out, job, false);
}

std::optional<Rendering> read_answer(std::span<const std::byte> bytes, std::size_t tokens)
{
    Reader reader(bytes);
    std::optional<Rendering> rendering;
    bool spoken = false;
    reader(spoken);
    if (spoken) {
        reader(rendering.emplace());
        check_rendering(*rendering, tokens);
    }
    reader.end();
    return rendering;
}

void append_greeting(WireBytes& out, const std::vector<SpeechObjectToken>& voices)
{
    append(out, 0, voices);
}

std::vector<SpeechObjectToken> read_greeting(std::span<const std::byte> bytes)
{
    Reader reader(bytes);
    std::vector<SpeechObjectToken> voices;
    reader(voices);
    reader.end();
    return voices;
}

void append_drop(WireBytes& out, std::uint64_t last_job)
{
    append(out, last_job);
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
