#include "documents/speech_tags.h"

namespace tessavox {

namespace {

/// Nothing is known of a colour that was mixed.
void restore(RichTextPane& pane, const std::optional<std::int32_t>& color)
{
    if (color)
        pane.set_SelColor(*color);
}

} // namespace

std::string silence_tag(const std::string& milliseconds)
{
    return "<silence msec=\"" + milliseconds + "\" /  > ";
}

std::string voice_tag(const std::string& name)
{
    return "<VOICE REQUIRED=\"NAME=" + name + "\" > ";
}

std::string speed_tag(const std::string& speed)
{
    return "<rate speed=\"" + speed + "\" > ";
}

void insert_tag(RichTextPane& pane, const std::string& tag)
{
    const OneStep step(pane);
    const TextSlice saved = pane.SelText();
    const std::optional<std::int32_t> color = pane.SelColor();
    pane.set_SelColor(tag_color);
    pane.set_SelText(std::u16string(saved.view()) + to_utf16(tag));
    restore(pane, color);
    restore(pane, color); // the procedure has it twice
}

void insert_spell_tags(RichTextPane& pane)
{
    const OneStep step(pane);
    const TextSlice saved = pane.SelText();
    const std::optional<std::int32_t> color = pane.SelColor();
    pane.set_SelColor(tag_color);
    pane.set_SelText(u"<spell>");
    restore(pane, color);
    pane.set_SelText(std::u16string(saved.view()));
    pane.set_SelColor(tag_color);
    pane.set_SelText(u"</spell>");
    restore(pane, color);
}

} // namespace tessavox
