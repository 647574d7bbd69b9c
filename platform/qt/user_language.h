// The language that the user's desktop speaks.
#pragma once

namespace tessavox {

/// Its id as in [MS-LCID], such as 1031 for German in Germany; 0 if it has none.
int user_language_id();

} // namespace tessavox
