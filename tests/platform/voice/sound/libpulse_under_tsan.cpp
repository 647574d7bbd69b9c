// The sound server's library hands freed packets from one connection to another through a pool of
// its own, whose atomic operations the thread sanitizer does not see. Named here are the places
// where it then suspects the new owner; none of them calls back into the program.
extern "C" const char* __tsan_default_suppressions()
{
    return "race:pa_iochannel_read_with_ancil_data\n"
           "race:pa_packet_new_data\n"
           "race:pa_srbchannel_read\n"
           "race:pa_tagstruct_puts\n";
}
