// What the markup read so far has set, and how a tag changes it.
#pragma once

#include "platform/voice/text/markup_scanner.h"
#include "platform/voice/text/text_reader.h"
#include "platform/voice/text/voice_chooser.h"
#include "platform/voice/utterance.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tessavox::voice {

/// The elements that mean something. All others are as though they were not there.
enum class Element : std::uint8_t {
    none,
    silence,
    rate,
    pitch,
    volume,
    emph,
    spell,
    voice,
    lang,
    pron,
    partofsp,
    context,
    bookmark,
    sapi,
    count
};

/// The phonemes of a pron element, and where its tag stands.
struct Pronunciation {
    std::string phonemes;
    std::uint32_t source_begin = 0;
    std::uint32_t source_end = 0;
};
using PronunciationPtr = std::shared_ptr<const Pronunciation>;

/// Rate and pitch are plain sums of what the tags say: the voice's own rate must be added before
/// the sum is clamped, and pitch() of the finished style is clamped by finished_style().
struct MarkupSettings {
    SpeechStyle style;
    int volume = 100; // per cent; multiplies the voice's own volume
    std::string context; // "date_mdy", "number_cardinal" ...; a hint
    PronunciationPtr pronunciation; // stands for the enclosed text

    bool operator==(const MarkupSettings&) const = default;
};
using MarkupSettingsPtr = std::shared_ptr<const MarkupSettings>;

/// A stack of open elements that shares everything below its top with older states.
class MarkupState {
public:
    explicit MarkupState(MarkupSettingsPtr settings)
        : m_settings(std::move(settings))
    {
    }
    MarkupState(const MarkupState&) = default;
    MarkupState& operator=(const MarkupState&) = delete;
    ~MarkupState()
    {
        // One after the other: thousands of states in a row must not end in thousands of nested
        // calls.
        MarkupStatePtr outer = std::move(m_outer);
        while (outer && outer.use_count() == 1)
            outer = std::move(outer->m_outer);
    }

    /// The state in which no markup is in force.
    static MarkupStatePtr initial()
    {
        return std::make_shared<const MarkupState>(std::make_shared<const MarkupSettings>());
    }

    const MarkupSettingsPtr& settings() const { return m_settings; }

    /// After a start tag: the settings hold until its end tag.
    static MarkupStatePtr opened(
        const MarkupStatePtr& outer, Element element, MarkupSettingsPtr settings)
    {
        auto state = std::make_shared<MarkupState>(std::move(settings));
        state->m_element = element;
        state->m_outer = outer;
        state->m_enclosing = outer->m_enclosing;
        if (outer->m_element != Element::none)
            state->m_enclosing[static_cast<std::size_t>(outer->m_element)] = outer.get();
        return state;
    }
    /// After an empty element: the settings hold until the innermost open element ends.
    static MarkupStatePtr changed(const MarkupStatePtr& state, MarkupSettingsPtr settings)
    {
        auto next = std::make_shared<MarkupState>(*state);
        next->m_settings = std::move(settings);
        return next;
    }
    /// After an end tag, which ends all that was opened inside its element as well. The same state
    /// if no such element is open.
    static MarkupStatePtr closed(const MarkupStatePtr& state, Element element)
    {
        const MarkupState* opened = state->innermost(element);
        return opened ? opened->m_outer : state;
    }
    /// The innermost open element of this kind, or null.
    const MarkupState* innermost(Element element) const
    {
        return m_element == element ? this : m_enclosing[static_cast<std::size_t>(element)];
    }

private:
    MarkupSettingsPtr m_settings;
    Element m_element = Element::none;
    mutable MarkupStatePtr m_outer; // emptied only by the destructor
    std::array<const MarkupState*, static_cast<std::size_t>(Element::count)> m_enclosing{};
};

/// What a tag does to the text after it.
struct TagEffect {
    MarkupStatePtr state;
    std::variant<std::monostate, Silence, Bookmark, PronunciationPtr> item; // spoken in its place
};

/// A tag as found in the text.
struct FoundTag {
    const Markup& tag;
    std::span<const MarkupAttribute> attributes;
    std::uint32_t source_begin = 0;
};

/// Never fails: what is not understood has no effect.
TagEffect effect_of(const FoundTag& tag, const MarkupStatePtr& state, const VoiceChooser& voices);

/// The style as an utterance carries it: pitch is clamped to -10..10.
SpeechStyle finished_style(const MarkupSettings& settings, bool speak_punctuation);

} // namespace tessavox::voice
