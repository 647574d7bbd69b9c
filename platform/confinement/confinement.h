// The walls around a process that gives a foreign text to a library that we did not write.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tessavox {

/// What the process may still do. Whatever else reaches outside of it fails: opening, creating or
/// changing a file, any socket, signals to others, new programs, new privileges. What is open stays
/// open. That a file is there, and its size, can still be seen.
struct Confinement {
    std::vector<std::string> readable; // files, and folders with all that lies below them
    std::string writable; // a folder where files may be written too; empty: nowhere
    // Programs among `readable`, with children of their own. They stand within the same walls, and
    // can't leave the process group. What a session's programs ask of each other stays shut.
    bool may_execute = false;
    std::uint64_t most_memory_bytes = 0; // of address space; 0: as much as there is
    std::uint64_t most_file_bytes = 0; // length of a file that it writes
};

/// Confines this process for good; its threads and children too. To be called before there are
/// other threads, and when all libraries are loaded. Returns what this kernel or this build can't
/// keep it from, a sentence each; nothing if every wall stands. A sanitizer needs the whole address
/// space, so a build with one leaves memory unbounded, which counts as no gap.
std::vector<std::string> confine(const Confinement& confinement);

namespace walls {

/// Each puts up one wall and returns whether it stands.
bool confine_files(const Confinement& confinement);
bool confine_system_calls(const Confinement& confinement);

} // namespace walls

} // namespace tessavox
