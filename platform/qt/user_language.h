// The language that the user's desktop speaks.
#pragma once

#include <string>

namespace tessavox {

/// Its id as in [MS-LCID], such as 1031 for German in Germany; 0 if it has none.
int user_language_id();

/// Has the toolkit's own dialogs, buttons and menus speak a language, such as "de", as far as its
/// texts of that are installed.
void speak_by_toolkit(const std::string& language);

} // namespace tessavox
