// Speaks utterances for another process, which started it and feeds it over a socket.
#include "platform/voice/engines/render_farm.h"

int main()
{
    return tessavox::voice::run_render_helper();
}
