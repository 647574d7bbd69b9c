// Whether this process may show pages at all.
#pragma once

namespace tessavox {

/// Pages run in processes that the system confines. Where it can't, the engine would end the whole
/// program at its start, so that is asked before. Root's pages can be shown by a test bed alone,
/// which says so in QTWEBENGINE_DISABLE_SANDBOX; for anybody else that is forgotten here.
bool can_confine_pages();

} // namespace tessavox
