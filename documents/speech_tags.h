// Speech tags in the text of a document: the exact texts, and how they are put in.
#pragma once

#include "platform/rich_text_pane.h"

#include <string>

namespace tessavox {

/// Dark red sets tags apart from the text that is read.
constexpr std::int32_t tag_color = RGB(149, 32, 19);

/// The values are put in as they are, and nothing is escaped.
std::string silence_tag(const std::string& milliseconds);
std::string voice_tag(const std::string& name);
std::string speed_tag(const std::string& speed);

/// Puts a tag after the selected text, which stays and takes the colour of the tag; with nothing
/// selected, at the caret. What is typed next has the old colour, unless the selection mixed
/// several: then nobody knows which.
void insert_tag(RichTextPane& pane, const std::string& tag);

/// Puts the selected text between the tags for spelling. It keeps its colour and loses all other
/// formats.
void insert_spell_tags(RichTextPane& pane);

} // namespace tessavox
