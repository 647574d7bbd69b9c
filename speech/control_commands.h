// The Control menu: reading, pausing, stopping and wave files of the active document.
#pragma once

#include "forms/main_controls.h"

#include <functional>

namespace tessavox {

class DocumentSpeech;

/// `active` gives the speech of the active document and throws Failure where there is none.
void add_control_commands(MainControls& main, const std::function<DocumentSpeech&()>& active);

} // namespace tessavox
