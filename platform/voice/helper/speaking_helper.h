// The process in which the engines run, for the one that started it.
#pragma once

namespace tessavox::voice {

/// Confines this process, greets on descriptor 1, and then answers there what is asked on
/// descriptor 0. Ends the process with that, or when it is asked nonsense.
[[noreturn]] void run_speaking_helper();

} // namespace tessavox::voice
