// Texts as the system's calls that start a program take them.
#pragma once

#include <string>
#include <vector>

namespace tessavox {

/// A pointer to each text and a null pointer at the end; good as long as the texts are unchanged.
inline std::vector<char*> argument_pointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace tessavox
