// Speaks utterances for another process, which started it and feeds it over a socket.
#include "platform/voice/helper/speaking_helper.h"

int main()
{
    tessavox::voice::run_speaking_helper();
}
