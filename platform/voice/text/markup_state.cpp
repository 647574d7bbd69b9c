#include "platform/voice/text/markup_state.h"

#include "platform/split.h"
#include "platform/text.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace tessavox::voice {

namespace {

constexpr int least_adjustment = -10; // of rate and pitch
constexpr int greatest_adjustment = 10;
constexpr int greatest_volume = 100;
constexpr int longest_silence_ms = 65535;
constexpr int greatest_sum = 1'000'000'000; // sums of tags stay far from overflow
constexpr std::size_t longest_hint = 64;

bool same_name(std::u16string_view text, std::string_view name)
{
    return text.size() == name.size()
        && std::equal(text.begin(), text.end(), name.begin(),
            [](char16_t a, char b) { return lower_ascii(a) == static_cast<unsigned char>(b); });
}

const MarkupAttribute* find_attribute(const FoundTag& tag, std::string_view name)
{
    const auto found = std::find_if(tag.attributes.begin(), tag.attributes.end(),
        [&](const MarkupAttribute& attribute) { return same_name(attribute.name, name); });
    return found == tag.attributes.end() ? nullptr : &*found;
}

std::string text_of(const FoundTag& tag, std::string_view name)
{
    const MarkupAttribute* attribute = find_attribute(tag, name);
    return attribute ? to_utf8(decoded_value(attribute->value)) : std::string();
}

/// The whole number in an attribute, clamped; nothing if it is missing or no number.
std::optional<int> number(const FoundTag& tag, std::string_view name, int least, int greatest)
{
    const std::string text = text_of(tag, name);
    std::string_view digits = trimmed(text);
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.remove_prefix(1);
    long long value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (end != digits.data() + digits.size() || error == std::errc::invalid_argument)
        return std::nullopt;
    if (error == std::errc::result_out_of_range)
        return digits.front() == '-' ? least : greatest;
    return static_cast<int>(std::clamp<long long>(value, least, greatest));
}

struct Setter {
    const FoundTag& tag;
    const VoiceChooser& voices;
    MarkupSettings& settings;
    SpeechStyle& style() const { return settings.style; }
};

/// `relative` adds to what is in force, `absolute` replaces it.
void adjust(const Setter& to, int& value, std::string_view relative, std::string_view absolute)
{
    if (const auto sum = number(to.tag, relative, least_adjustment, greatest_adjustment))
        value = std::clamp(value + *sum, -greatest_sum, greatest_sum);
    if (const auto set = number(to.tag, absolute, least_adjustment, greatest_adjustment))
        value = *set;
}

void choose_voice(const Setter& to, std::string_view required, std::string_view optional)
{
    if (required.empty() && optional.empty())
        return;
    if (const auto voice = to.voices.choose(required, optional, to.style().voice))
        to.style().voice = *voice;
}

void set_language(const Setter& to)
{
    std::string id = text_of(to.tag, "langid");
    id.erase(0, id.find_first_not_of(" 0"));
    id.erase(id.find_last_not_of(' ') + 1);
    const bool good = !id.empty() && id.find_first_not_of("0123456789abcdefABCDEF") == id.npos;
    if (good)
        choose_voice(to, "Language=" + id, {});
}

void set_context(const Setter& to)
{
    const std::string id = text_of(to.tag, "id");
    if (!id.empty() && id.size() <= longest_hint)
        to.settings.context = id;
}

PronunciationPtr pronunciation_of(const FoundTag& tag)
{
    auto pronunciation = std::make_shared<Pronunciation>();
    pronunciation->phonemes = trimmed(text_of(tag, "sym"));
    pronunciation->source_begin = tag.source_begin;
    pronunciation->source_end = static_cast<std::uint32_t>(tag.tag.end);
    return pronunciation->phonemes.empty() ? nullptr : pronunciation;
}

enum class Form { empty, enclosing, either, replacing };

struct ElementRow {
    std::string_view name;
    Element element;
    Form form;
    void (*set)(const Setter&); // may be null: acts in its own place, or not at all
};

constexpr ElementRow elements[] = {
    { "silence", Element::silence, Form::empty, nullptr },
    { "rate", Element::rate, Form::either,
        [](const Setter& to) { adjust(to, to.style().rate, "speed", "absspeed"); } },
    { "pitch", Element::pitch, Form::either,
        [](const Setter& to) { adjust(to, to.style().pitch, "middle", "absmiddle"); } },
    { "volume", Element::volume, Form::either,
        [](const Setter& to) {
            if (const auto level = number(to.tag, "level", 0, greatest_volume))
                to.settings.volume = *level;
        } },
    { "emph", Element::emph, Form::enclosing,
        [](const Setter& to) { to.style().emphasis = true; } },
    { "spell", Element::spell, Form::enclosing, [](const Setter& to) { to.style().spell = true; } },
    { "voice", Element::voice, Form::either,
        [](const Setter& to) {
            choose_voice(to, text_of(to.tag, "required"), text_of(to.tag, "optional"));
        } },
    { "lang", Element::lang, Form::either, set_language },
    { "pron", Element::pron, Form::replacing,
        [](const Setter& to) {
            if (PronunciationPtr pronunciation = pronunciation_of(to.tag))
                to.settings.pronunciation = std::move(pronunciation);
        } },
    { "partofsp", Element::partofsp, Form::enclosing, nullptr }, // a hint that no engine takes
    { "context", Element::context, Form::enclosing, set_context },
    { "bookmark", Element::bookmark, Form::empty, nullptr },
    { "sapi", Element::sapi, Form::enclosing, nullptr },
};

const ElementRow* row_of(std::u16string_view name)
{
    const auto row = std::find_if(std::begin(elements), std::end(elements),
        [&](const ElementRow& each) { return same_name(name, each.name); });
    return row == std::end(elements) ? nullptr : row;
}

/// The settings after the tag; the very same object if the tag changes nothing.
MarkupSettingsPtr settings_after(const ElementRow& row, const FoundTag& tag,
    const MarkupStatePtr& state, const VoiceChooser& voices)
{
    if (!row.set)
        return state->settings();
    MarkupSettings settings = *state->settings();
    row.set({ tag, voices, settings });
    if (settings == *state->settings())
        return state->settings();
    return std::make_shared<const MarkupSettings>(std::move(settings));
}

decltype(TagEffect::item) item_of(Element element, const FoundTag& tag)
{
    if (element == Element::silence) {
        if (const auto pause = number(tag, "msec", 0, longest_silence_ms))
            return Silence{ static_cast<std::uint32_t>(*pause) };
    }
    if (element == Element::bookmark && find_attribute(tag, "mark"))
        return Bookmark{ text_of(tag, "mark") };
    return {};
}

} // namespace

TagEffect effect_of(const FoundTag& tag, const MarkupStatePtr& state, const VoiceChooser& voices)
{
    const ElementRow* row = row_of(tag.tag.name);
    if (!row)
        return { state, {} };
    if (tag.tag.kind == Markup::Kind::end_tag)
        return { MarkupState::closed(state, row->element), {} };
    if (tag.tag.kind == Markup::Kind::start_tag) {
        auto inner
            = MarkupState::opened(state, row->element, settings_after(*row, tag, state, voices));
        return { std::move(inner), item_of(row->element, tag) };
    }
    if (row->form == Form::replacing) {
        if (PronunciationPtr pronunciation = pronunciation_of(tag))
            return { state, std::move(pronunciation) };
    }
    if (row->form != Form::either)
        return { state, item_of(row->element, tag) };
    MarkupSettingsPtr settings = settings_after(*row, tag, state, voices);
    if (settings == state->settings())
        return { state, {} };
    return { MarkupState::changed(state, std::move(settings)), {} };
}

SpeechStyle finished_style(const MarkupSettings& settings, bool speak_punctuation)
{
    SpeechStyle style = settings.style;
    style.pitch = std::clamp(style.pitch, least_adjustment, greatest_adjustment);
    style.speak_punctuation = speak_punctuation;
    return style;
}

} // namespace tessavox::voice
