// Documents as texts, so that they can be compared and looked at.
#pragma once

#include "platform/rtf/document.h"

#include <string>

namespace tessavox::rtf {

/// A line for each paragraph, its formats in brackets where they aren't the usual ones:
/// "[bullet li720] It [b, Arial] was[]." The format of a paragraph's end is told only if the last
/// run has another.
std::string described(const Document& document);

/// What a document says about itself that isn't true; empty if there is nothing.
std::string flaw_of(const Document& document);

} // namespace tessavox::rtf
